#include "picture/ExrCompression.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace drevintool {
namespace {

// By the file's own numbers, which are those of the library.
constexpr std::array<const char*, 10> kNames = {"none",  "rle", "zips", "zip",  "piz",
                                                "pxr24", "b44", "b44a", "dwaa", "dwab"};

}  // namespace

std::optional<Imf::Compression> compressionNamed(const std::string& name) {
  const auto* const found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return static_cast<Imf::Compression>(found - kNames.begin());
}

std::string compressionName(int number) {
  const bool known = number >= 0 && number < static_cast<int>(kNames.size());
  return known ? kNames[static_cast<std::size_t>(number)] : "unknown";
}

std::string compressionList() {
  std::string list;
  for (const char* name : kNames)
    list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}

bool keepsBits(Imf::Compression compression) {
  return compression <= Imf::PIZ_COMPRESSION;
}

}  // namespace drevintool
