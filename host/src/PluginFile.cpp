#include "PluginFile.h"

#include <elf.h>

#include <cstdint>
#include <cstring>
#include <fstream>

namespace embedded {

namespace {

template <typename Record>
bool readAt(std::ifstream& file, std::uint64_t place, Record& record) {
  file.seekg(static_cast<std::streamoff>(place));
  file.read(reinterpret_cast<char*>(&record), sizeof record);
  return file.good();
}

bool isLibrary(const Elf64_Ehdr& head) {
  return std::memcmp(head.e_ident, ELFMAG, SELFMAG) == 0 && head.e_ident[EI_CLASS] == ELFCLASS64;
}

}  // namespace

bool isCutOff(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto size = static_cast<std::uint64_t>(file.tellg());
  Elf64_Ehdr head{};
  if (!file || !readAt(file, 0, head) || !isLibrary(head)) return false;
  for (unsigned number = 0; number < head.e_phnum; ++number) {
    Elf64_Phdr segment{};
    if (!readAt(file, head.e_phoff + number * sizeof segment, segment)) return true;
    if (segment.p_filesz > size || segment.p_offset > size - segment.p_filesz) return true;
  }
  return false;
}

}  // namespace embedded
