#include "picture/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failAt(const std::string& path, const std::string& reason) {
  throw ToolError(ExitCode::OutputNotWritten, oneLine(path) + ": " + reason);
}

std::string systemText(int error) {
  return std::generic_category().message(error);
}

// The end of a chain of links, whether something is there or not.
std::string resolved(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path place = path;
  std::error_code error;
  for (int links = 0; fs::is_symlink(fs::symlink_status(place, error)); ++links) {
    if (links == kMostLinks) failAt(path, systemText(ELOOP));
    const fs::path target = fs::read_symlink(place, error);
    if (error) failAt(path, "cannot follow the link: " + error.message());
    place = target.is_absolute() ? target : place.parent_path() / target;
  }
  return place.string();
}

void checkResolved(const std::string& path, const std::string& place) {
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (fs::is_directory(status)) failAt(path, "is a directory; name a file in it");
  if (fs::exists(status) && !fs::is_regular_file(status)) failAt(path, "is not a regular file");
  const fs::path parent = fs::path(place).parent_path();
  const std::string folder = parent.empty() ? "." : parent.string();
  if (!fs::is_directory(folder, error)) failAt(path, "its folder does not exist");
  if (access(folder.c_str(), W_OK) != 0) failAt(path, "its folder: " + systemText(errno));
}

std::string besideOf(const std::string& place) {
  const fs::path wanted(place);
  const std::string name = "." + wanted.filename().string().substr(0, 200);
  return (wanted.parent_path() / (name + "." + std::to_string(getpid()) + ".tmp")).string();
}

// The permissions of the file that will be replaced, or those of a new one.
mode_t modeFor(const std::string& place) {
  struct stat status {};
  constexpr mode_t kPermissions = 0777;
  constexpr mode_t kNew = 0666;
  return stat(place.c_str(), &status) == 0 ? status.st_mode & kPermissions : kNew;
}

}  // namespace

void AtomicFile::checkPlace(const std::string& path) {
  checkResolved(path, resolved(path));
}

AtomicFile::AtomicFile(const std::string& path) : path_(path), place_(resolved(path)) {
  checkResolved(path_, place_);
  temporary_ = besideOf(place_);
  const int flags = O_CREAT | O_TRUNC | O_RDWR | O_NOFOLLOW | O_CLOEXEC;
  const int descriptor = open(temporary_.c_str(), flags, modeFor(place_));
  if (descriptor < 0) failAt(path_, systemText(errno));
  file_ = fdopen(descriptor, "w+b");
  if (file_ == nullptr) {
    const int error = errno;
    close(descriptor);
    discard();
    failAt(path_, systemText(error));
  }
}

AtomicFile::~AtomicFile() {
  discard();
}

void AtomicFile::fail(int error) {
  if (firstError_ == 0) firstError_ = error == 0 ? EIO : error;
  failAt(path_, systemText(firstError_));
}

void AtomicFile::discard() noexcept {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  if (!temporary_.empty()) unlink(temporary_.c_str());
  temporary_.clear();
}

void AtomicFile::write(const void* bytes, std::size_t count) {
  if (firstError_ != 0) fail(firstError_);
  errno = 0;
  if (std::fwrite(bytes, 1, count, file_) != count) fail(errno);
}

void AtomicFile::seek(std::uint64_t position) {
  if (firstError_ != 0) fail(firstError_);
  errno = 0;
  if (fseeko(file_, static_cast<off_t>(position), SEEK_SET) != 0) fail(errno);
}

std::uint64_t AtomicFile::position() {
  const off_t at = ftello(file_);
  if (at < 0) fail(errno);
  return static_cast<std::uint64_t>(at);
}

void AtomicFile::commit() {
  if (firstError_ != 0) fail(firstError_);
  errno = 0;
  if (std::fflush(file_) != 0) fail(errno);
  // Some file systems know no sync; that alone does not spoil the file.
  if (fsync(fileno(file_)) != 0 && errno != EINVAL && errno != ENOTSUP) fail(errno);
  const int closed = std::fclose(file_);
  file_ = nullptr;
  if (closed != 0) fail(errno);
  if (std::rename(temporary_.c_str(), place_.c_str()) != 0) fail(errno);
  temporary_.clear();
}

}  // namespace drevintool
