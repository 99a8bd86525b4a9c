#include "picture/FileBytes.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "picture/NearestFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr std::size_t kLongestName = 255;

std::string systemText() {
  return std::generic_category().message(errno);
}

}  // namespace

FileBytes::FileBytes(const std::string& path, const std::string& kind)
    : path_(path), file_(nullptr, &std::fclose) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) fail(systemText() + nearestFileHint(path));
  if (S_ISDIR(status.st_mode)) fail("is a directory, not a " + kind);
  if (!S_ISREG(status.st_mode)) fail("is not a regular file; save the " + kind + " as one");
  size_ = static_cast<std::uint64_t>(status.st_size);
  file_.reset(std::fopen(path.c_str(), "rbe"));
  if (!file_) fail(systemText());
}

std::string FileBytes::take(std::uint64_t count) {
  if (count > left()) fail("the file ends inside its header");
  std::string bytes(static_cast<std::size_t>(count), '\0');
  if (std::fread(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
    fail("cannot be read");
  }
  at_ += count;
  return bytes;
}

void FileBytes::skip(std::uint64_t count) {
  if (count > left()) fail("a header attribute is larger than the file");
  seek(at_ + count);
}

void FileBytes::seek(std::uint64_t position) {
  if (fseeko(file_.get(), static_cast<off_t>(position), SEEK_SET) != 0) fail("cannot be read");
  at_ = position;
}

std::string FileBytes::name() {
  std::string text;
  for (char c = next(); c != '\0'; c = next()) {
    if (text.size() == kLongestName) fail("damaged: a header name has no end");
    text += c;
  }
  return text;
}

std::int32_t FileBytes::i32() {
  return number<std::int32_t>();
}
std::uint32_t FileBytes::u32() {
  return number<std::uint32_t>();
}
std::uint64_t FileBytes::u64() {
  return number<std::uint64_t>();
}

char FileBytes::next() {
  const int c = left() == 0 ? EOF : std::fgetc(file_.get());
  if (c == EOF) fail("the file ends inside its header");
  ++at_;
  return static_cast<char>(c);
}

template <typename Number>
Number FileBytes::number() {
  Number value = 0;
  const std::string bytes = take(sizeof value);
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

void FileBytes::fail(const std::string& reason) const {
  throw ToolError(ExitCode::InputUnreadable, oneLine(path_) + ": " + reason);
}

}  // namespace drevintool
