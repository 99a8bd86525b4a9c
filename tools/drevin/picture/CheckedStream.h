#pragma once

/// The picture library's way into a file of our own.

#include <OpenEXR/ImfIO.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "picture/AtomicFile.h"

namespace drevintool {

/// The library's own file stream does not look whether closing succeeds, and its writers swallow
/// what goes wrong when they end; AtomicFile remembers the first failure until it is committed.
class CheckedStream : public Imf::OStream {
 public:
  CheckedStream(AtomicFile& file, const std::string& path)
      : Imf::OStream(path.c_str()), file_(file) {}
  void write(const char bytes[], int count) override {
    file_.write(bytes, static_cast<std::size_t>(count));
  }
  uint64_t tellp() override { return file_.position(); }
  void seekp(uint64_t position) override { file_.seek(position); }

 private:
  AtomicFile& file_;
};

}  // namespace drevintool
