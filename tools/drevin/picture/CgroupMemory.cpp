#include "picture/CgroupMemory.h"

#include <algorithm>
#include <fstream>

namespace drevintool {
namespace {

using Bytes = std::optional<std::uint64_t>;

// The number at the start of a file; nothing if it is missing or says "max".
Bytes numberIn(const std::string& path) {
  std::ifstream file(path);
  std::uint64_t number = 0;
  return file >> number ? Bytes(number) : Bytes();
}

Bytes leftOf(const Bytes& limit, const Bytes& used) {
  if (!limit) return {};
  return used.value_or(0) >= *limit ? 0 : *limit - used.value_or(0);
}

Bytes leastOf(const Bytes& a, const Bytes& b) {
  if (!a) return b;
  return b ? std::min(*a, *b) : a;
}

// Without a limit version 1 says a number near 2^63.
Bytes leftIn(const std::string& folder) {
  constexpr std::uint64_t unlimited = std::uint64_t{1} << 60;
  const Bytes unified =
      leftOf(numberIn(folder + "/memory.max"), numberIn(folder + "/memory.current"));
  const Bytes limit = numberIn(folder + "/memory.limit_in_bytes");
  if (!limit || *limit >= unlimited) return unified;
  return leastOf(unified, leftOf(limit, numberIn(folder + "/memory.usage_in_bytes")));
}

}  // namespace

std::optional<std::uint64_t> cgroupMemoryLeft(const embedded::CgroupPlaces& places) {
  Bytes left;
  for (const std::string& folder : embedded::cgroupFolders("memory", places))
    left = leastOf(left, leftIn(folder));
  return left;
}

}  // namespace drevintool
