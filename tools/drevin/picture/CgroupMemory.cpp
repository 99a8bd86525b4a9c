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

Bytes leftUpFrom(const std::string& root, std::string path) {
  Bytes left = leftIn(root);
  while (!path.empty() && path != "/") {
    left = leastOf(left, leftIn(root + path));
    path.resize(std::min(path.size(), path.rfind('/')));
  }
  return left;
}

}  // namespace

std::optional<std::uint64_t> cgroupMemoryLeft(const CgroupPlaces& places) {
  Bytes left = leastOf(leftIn(places.root), leftIn(places.root + "/memory"));
  std::ifstream file(places.ofProcess);
  for (std::string line; std::getline(file, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    const std::string path = line.substr(second + 1);
    if (controllers == ",,") left = leastOf(left, leftUpFrom(places.root, path));
    if (controllers.find(",memory,") != std::string::npos)
      left = leastOf(left, leftUpFrom(places.root + "/memory", path));
  }
  return left;
}

}  // namespace drevintool
