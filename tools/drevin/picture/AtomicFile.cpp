#include "picture/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "picture/NearestFile.h"
#include "picture/TemporaryFile.h"
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

std::string folderOf(const std::string& place) {
  const fs::path parent = fs::path(place).parent_path();
  return parent.empty() ? "." : parent.string();
}

// Such links name what a process has open: the file behind one would be replaced, and who writes to
// it would write to nowhere.
bool isOfOpenFile(const fs::path& link) {
  std::error_code error;
  const std::string folder = fs::weakly_canonical(folderOf(link.string()), error).string();
  return !error && folder.rfind("/proc/", 0) == 0;
}

// The end of a chain of links, whether something is there or not.
std::string resolved(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path place = path;
  std::error_code error;
  for (int links = 0; fs::is_symlink(fs::symlink_status(place, error)); ++links) {
    if (links == kMostLinks) failAt(path, systemText(ELOOP));
    if (StreamPlace::at(place.string())) break;
    if (isOfOpenFile(place)) failAt(path, "is open already, and no place for a file; name a file");
    const fs::path target = fs::read_symlink(place, error);
    if (error) failAt(path, "cannot follow the link: " + error.message());
    place = target.is_absolute() ? target : place.parent_path() / target;
  }
  return place.string();
}

void checkResolved(const std::string& path, const std::string& place) {
  if (const std::optional<StreamPlace> stream = StreamPlace::at(place)) {
    if (stream->fault() == EBADF) failAt(path, "is not open for writing");
    if (stream->fault() != 0) failAt(path, systemText(stream->fault()));
    return;
  }
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (fs::is_directory(status)) failAt(path, "is a directory; name a file in it");
  if (fs::exists(status) && !fs::is_regular_file(status)) failAt(path, "is not a regular file");
  const std::string folder = folderOf(place);
  if (!fs::is_directory(folder, error))
    failAt(path, "its folder does not exist; make it first" + nearestFileHint(folder));
  if (access(folder.c_str(), W_OK) != 0) failAt(path, "its folder: " + systemText(errno));
}

// The permissions of the file that will be replaced, or those of a new one.
mode_t modeFor(const std::string& place) {
  struct stat status {};
  constexpr mode_t kPermissions = 0777;
  constexpr mode_t kNew = 0666;
  return stat(place.c_str(), &status) == 0 ? status.st_mode & kPermissions : kNew;
}

// What temporary files are named for that are given to streams.
std::string placeForStreams() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  return ((error ? fs::path("/tmp") : folder) / "drevin").string();
}

// Some file systems know no sync; that alone does not spoil a file.
bool syncFailed(int descriptor) {
  return fsync(descriptor) != 0 && errno != EINVAL && errno != ENOTSUP;
}

// The new name lies in the folder, which may be lost by itself when the power goes. A folder that
// may be written but not read cannot be flushed.
bool folderSyncFailed(const std::string& place) {
  const int folder = open(folderOf(place).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return false;
  const bool failed = syncFailed(folder);
  const int error = errno;
  close(folder);
  errno = error;
  return failed;
}

}  // namespace

void AtomicFile::checkPlace(const std::string& path) {
  checkResolved(path, resolved(path));
}

AtomicFile::AtomicFile(const std::string& path)
    : path_(path), place_(resolved(path)), stream_(StreamPlace::at(place_)) {
  constexpr mode_t kOwn = 0600;
  checkResolved(path_, place_);
  const std::string beside = stream_ ? placeForStreams() : place_;
  removeAbandonedFiles(beside);
  const TemporaryFile made = makeTemporaryFile(beside, stream_ ? kOwn : modeFor(place_));
  if (made.descriptor < 0) failAt(path_, systemText(errno));
  temporary_ = made.path;
  lock_ = made.descriptor;
  const int descriptor = fcntl(lock_, F_DUPFD_CLOEXEC, 0);
  file_ = descriptor < 0 ? nullptr : fdopen(descriptor, "w+b");
  if (file_ == nullptr) {
    const int error = errno;
    if (descriptor >= 0) close(descriptor);
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
  if (lock_ >= 0) close(lock_);
  lock_ = -1;
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

void AtomicFile::finishWriting() {
  if (firstError_ != 0) fail(firstError_);
  errno = 0;
  if (std::fflush(file_) != 0) fail(errno);
  if (syncFailed(fileno(file_))) fail(errno);
  const int closed = std::fclose(file_);
  file_ = nullptr;
  if (closed != 0) fail(errno);
}

void AtomicFile::giveToStream() {
  const int error = stream_->take(lock_);
  discard();
  if (error != 0) fail(error);
}

void AtomicFile::commit(const FileCheck& check) {
  finishWriting();
  if (access(temporary_.c_str(), F_OK) != 0) failAt(path_, "was removed while it was written");
  const std::string fault = check ? check(temporary_) : std::string();
  if (!fault.empty()) failAt(path_, "was not written whole: " + fault);
  if (stream_) {
    giveToStream();
    return;
  }
  if (std::rename(temporary_.c_str(), place_.c_str()) != 0) fail(errno);
  temporary_.clear();
  if (folderSyncFailed(place_)) fail(errno);
}

}  // namespace drevintool
