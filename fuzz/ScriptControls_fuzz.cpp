/// Any text as a script of the host for the controls of the node: its values are taken, or it is
/// refused with one line.

#include <cstddef>
#include <cstdint>
#include <string>

#include "MemoryFile.h"
#include "NodeForFuzzing.h"
#include "controls/ScriptFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const drevinfuzz::MemoryFile file("script");
  file.fill(bytes, count);
  drevintool::NodeArguments arguments;
  arguments.script = file.path();
  drevinfuzz::applyChanges(arguments, drevintool::scriptOrigin(file.path()));
  return 0;
}
