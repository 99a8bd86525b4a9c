#pragma once

/// Reading a file's bytes without trust in what they say.

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace drevintool {

/// Little-endian values of a regular file, each read checked against its end. Every failure throws
/// ToolError (InputUnreadable) with one line that names the file.
class FileBytes {
 public:
  /// Opens the file; fails if it is missing or no regular file. `kind` is what it should be, for
  /// messages.
  explicit FileBytes(const std::string& path, const std::string& kind = "picture");

  const std::string& path() const { return path_; }
  std::uint64_t size() const { return size_; }
  std::uint64_t position() const { return at_; }
  std::uint64_t left() const { return size_ - at_; }

  std::string take(std::uint64_t count);
  void skip(std::uint64_t count);
  /// `position` must not lie behind the end of the file.
  void seek(std::uint64_t position);
  /// Characters up to a zero, which is taken too; at most 255 of them.
  std::string name();
  std::int32_t i32();
  std::uint32_t u32();
  std::uint64_t u64();

 private:
  char next();
  template <typename Number>
  Number number();
  [[noreturn]] void fail(const std::string& reason) const;

  std::string path_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::uint64_t size_ = 0;
  std::uint64_t at_ = 0;
};

}  // namespace drevintool
