#include "terminal/NoMemory.h"

#include <algorithm>
#include <array>

namespace drevintool {

bool saysNoMemory(const std::string& line) {
  constexpr std::array<const char*, 3> kWords = {"not enough memory", "out of memory",
                                                 "of memory, more than"};
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](const char* words) { return line.find(words) != std::string::npos; });
}

}  // namespace drevintool
