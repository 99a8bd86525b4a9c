#include "picture/StreamPlace.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "terminal/NumberText.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

namespace fs = std::filesystem;

// Between looks for a signal.
constexpr int kMilliseconds = 100;

// The number of the open file that a link of the system stands for, or -1.
int ownDescriptor(const fs::path& link) {
  std::error_code error;
  const fs::path own = fs::canonical("/proc/self/fd", error);
  if (error || !fs::is_symlink(link, error) ||
      fs::weakly_canonical(link.parent_path(), error) != own || error)
    return -1;
  const std::optional<int> number = parseInteger(link.filename().string());
  return number && *number >= 0 && fcntl(*number, F_GETFD) >= 0 ? *number : -1;
}

int writeAll(int descriptor, const char* bytes, ssize_t count) {
  while (count > 0) {
    const ssize_t written = write(descriptor, bytes, static_cast<std::size_t>(count));
    if (written < 0 && errno == EAGAIN) {
      pollfd output{descriptor, POLLOUT, 0};
      poll(&output, 1, kMilliseconds);
    } else if (written < 0 && errno != EINTR) {
      return errno;
    }
    throwIfInterrupted();
    if (written <= 0) continue;
    bytes += written;
    count -= written;
  }
  return 0;
}

int copyAll(int from, int to) {
  std::array<char, std::size_t{1} << 16> buffer{};
  if (lseek(from, 0, SEEK_SET) != 0) return errno;
  for (;;) {
    const ssize_t count = read(from, buffer.data(), buffer.size());
    if (count == 0) return 0;
    if (count < 0 && errno != EINTR) return errno;
    if (const int error = writeAll(to, buffer.data(), count)) return error;
  }
}

// Closed whichever way it ends.
struct Descriptor {
  int number;
  explicit Descriptor(int opened) : number(opened) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number >= 0) close(number);
  }
};

}  // namespace

std::optional<StreamPlace> StreamPlace::at(const std::string& place) {
  const int descriptor = ownDescriptor(place);
  if (descriptor >= 0) return StreamPlace(place, descriptor);
  std::error_code error;
  const fs::file_status status = fs::symlink_status(place, error);
  if (!fs::is_character_file(status) && !fs::is_fifo(status)) return std::nullopt;
  return StreamPlace(place, -1);
}

int StreamPlace::fault() const {
  if (descriptor_ < 0) return access(place_.c_str(), W_OK) == 0 ? 0 : errno;
  const int flags = fcntl(descriptor_, F_GETFL);
  return flags < 0 ? errno : (flags & O_ACCMODE) == O_RDONLY ? EBADF : 0;
}

// Without blocking, so that a signal ends the wait for a reader.
int StreamPlace::open() const {
  if (descriptor_ >= 0) return fcntl(descriptor_, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  for (;;) {
    const int opened = ::open(place_.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (opened >= 0 || errno != ENXIO) return opened;
    throwIfInterrupted();
    poll(nullptr, 0, kMilliseconds);
  }
}

int StreamPlace::take(int file) const {
  std::fflush(stdout);
  const Descriptor output(open());
  return output.number < 0 ? errno : copyAll(file, output.number);
}

}  // namespace drevintool
