#pragma once

/// Bytes of the fuzzer as a file that can be opened by its path.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "Expect.h"

namespace drevinfuzz {

/// A file without a place on the disk.
class MemoryFile {
 public:
  explicit MemoryFile(const char* name) : descriptor_(memfd_create(name, MFD_CLOEXEC)) {
    expect(descriptor_ >= 0, "a file in memory can be made");
  }
  ~MemoryFile() { close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void fill(const std::uint8_t* bytes, std::size_t count) const {
    expect(ftruncate(descriptor_, 0) == 0, "the file can be emptied");
    const ssize_t written = pwrite(descriptor_, bytes, count, 0);
    expect(written == static_cast<ssize_t>(count), "the file can be filled");
  }
  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace drevinfuzz
