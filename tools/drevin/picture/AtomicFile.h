#pragma once

/// A file that appears in its place only when it is whole.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>

#include "picture/StreamPlace.h"

namespace drevintool {

/// What is wrong with a file that was written; empty if nothing is.
using FileCheck = std::function<std::string(const std::string& file)>;

/// Writes beside the wanted place and renames at the end; what stood there before stays until then.
/// A symbolic link is followed, its target is replaced. Devices, pipes and what this process has
/// open (see StreamPlace) are never replaced: they are given all bytes at the end. Every failure
/// throws ToolError (OutputNotWritten) with one line that names the wanted file and the reason.
/// What a process that was killed left beside the place goes when the next one writes there.
class AtomicFile {
 public:
  /// Creates the file beside the place. Fails if the folder is missing or not writable, or if the
  /// place holds something other than a regular file or a stream.
  explicit AtomicFile(const std::string& path);
  /// Removes what was not committed.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  /// Fails as the constructor would, leaving nothing behind: for a check before long work.
  static void checkPlace(const std::string& path);

  void write(const void* bytes, std::size_t count);
  void seek(std::uint64_t position);
  std::uint64_t position();

  /// Flushes to the device, closes, has the file looked over, renames it, and flushes the folder.
  /// Fails if any write before has failed, or with what `check` finds.
  void commit(const FileCheck& check = nullptr);

 private:
  [[noreturn]] void fail(int error);
  void finishWriting();
  void giveToStream();
  void discard() noexcept;

  std::string path_;   // as the user wrote it
  std::string place_;  // with links resolved
  std::optional<StreamPlace> stream_;
  std::string temporary_;  // beside the place, or of a stream in the folder for such files
  std::FILE* file_ = nullptr;
  int lock_ = -1;  // keeps the temporary file locked when file_ is closed
  int firstError_ = 0;
};

}  // namespace drevintool
