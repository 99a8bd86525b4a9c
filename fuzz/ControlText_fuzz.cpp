/// Any lines as settings of the node's controls, keyed ones among them.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "NodeForFuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  std::istringstream lines(std::string(reinterpret_cast<const char*>(bytes), count));
  drevintool::NodeArguments arguments;
  for (std::string line; std::getline(lines, line);)
    arguments.settings.push_back(line);
  drevinfuzz::applyChanges(arguments, "--set");
  return 0;
}
