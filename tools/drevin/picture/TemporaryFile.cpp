#include "picture/TemporaryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <vector>

namespace drevintool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".tmp";

// What all temporary names of a place begin with. Names have 255 bytes at most.
std::string beginningFor(const std::string& place) {
  constexpr std::size_t kLongest = 200;
  return "." + fs::path(place).filename().string().substr(0, kLongest) + ".";
}

fs::path folderOf(const std::string& place) {
  const fs::path folder = fs::path(place).parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

// "<process>.tmp" or "<process>-<number>.tmp" behind the beginning.
bool isTemporaryName(const std::string& name, const std::string& beginning) {
  const std::string ending = kEnding;
  if (name.size() <= beginning.size() + ending.size()) return false;
  if (name.compare(0, beginning.size(), beginning) != 0) return false;
  if (name.compare(name.size() - ending.size(), ending.size(), ending) != 0) return false;
  const std::string process =
      name.substr(beginning.size(), name.size() - beginning.size() - ending.size());
  return process.find_first_not_of("0123456789-") == std::string::npos;
}

bool isAt(int descriptor, const std::string& path) {
  struct stat open {};
  struct stat named {};
  return fstat(descriptor, &open) == 0 && lstat(path.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

// False if another process took the new file for an abandoned one before it was locked.
bool keep(int descriptor, const std::string& path) {
  if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
  return isAt(descriptor, path);
}

// The lock is held while the name goes, so that no file that came after it is hit.
void removeIfAbandoned(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return;
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isAt(descriptor, path)) unlink(path.c_str());
  close(descriptor);
}

std::vector<std::string> temporaryFilesOf(const std::string& place) {
  const std::string beginning = beginningFor(place);
  std::vector<std::string> files;
  std::error_code error;
  fs::directory_iterator entry(folderOf(place), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (isTemporaryName(entry->path().filename().string(), beginning)) {
      files.push_back(entry->path().string());
    }
  }
  return files;
}

}  // namespace

TemporaryFile makeTemporaryFile(const std::string& place, mode_t permissions) {
  constexpr int kMostTries = 1000;
  const std::string start = beginningFor(place) + std::to_string(getpid());
  for (int number = 0; number < kMostTries; ++number) {
    const std::string count = number == 0 ? "" : "-" + std::to_string(number);
    const std::string path = (folderOf(place) / (start + count + kEnding)).string();
    const int flags = O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = open(path.c_str(), flags, permissions);
    if (descriptor < 0 && errno != EEXIST) break;
    if (descriptor < 0) continue;
    if (keep(descriptor, path)) return {path, descriptor};
    close(descriptor);
  }
  return {};
}

void removeAbandonedFiles(const std::string& place) noexcept {
  try {
    for (const std::string& file : temporaryFilesOf(place))
      removeIfAbandoned(file);
  } catch (const std::exception&) {
    // Without memory for the names they stay until the next time.
    return;
  }
}

}  // namespace drevintool
