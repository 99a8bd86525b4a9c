#include "terminal/StandardOutput.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

bool readerIsGone() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

}  // namespace

void finishStandardOutput() {
  errno = 0;
  const bool flushed = std::fflush(stdout) == 0;
  const int reason = errno;
  if ((flushed && std::ferror(stdout) == 0) || readerIsGone()) return;
  throw ToolError(ExitCode::OutputNotWritten,
                  std::string("standard output: ") +
                      (reason != 0 ? std::strerror(reason) : "could not be written") +
                      "; what was printed is not whole");
}

}  // namespace drevintool
