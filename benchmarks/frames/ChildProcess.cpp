#include "frames/ChildProcess.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <stdexcept>

namespace drevin::bench {

namespace {

/// After fork(): nothing here allocates.
[[noreturn]] void run(const char* program, char* const* arguments, int line) {
  dup2(line, STDIN_FILENO);
  dup2(line, STDOUT_FILENO);
  execv(program, arguments);
  _exit(127);
}

}  // namespace

std::string thisProgram() {
  return "/proc/self/exe";
}

ChildProcess::ChildProcess(const std::string& program, std::vector<std::string> arguments)
    : name_(arguments.front()) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    throw std::runtime_error("no line to another process");
  std::fflush(nullptr);
  process_ = fork();
  if (process_ == 0) run(program.c_str(), pointers.data(), ends[1]);
  close(ends[1]);
  line_ = ends[0];
  if (process_ < 0) {
    close(line_);
    throw std::runtime_error("no other process to be had");
  }
}

ChildProcess::~ChildProcess() {
  wait();
  close(line_);
}

void ChildProcess::tell(const std::string& line) {
  const std::string text = line + "\n";
  // Not by write(), which would end this program where the other has ended.
  if (send(line_, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size()))
    throw std::runtime_error(name_ + ", in a process of its own, does not hear");
}

std::string ChildProcess::answer() {
  std::array<char, 256> part{};
  std::size_t end = heard_.find('\n');
  while (end == std::string::npos) {
    const ssize_t n = read(line_, part.data(), part.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) throw std::runtime_error(name_ + ", in a process of its own, ended unexpectedly");
    heard_.append(part.data(), static_cast<std::size_t>(n));
    end = heard_.find('\n');
  }
  std::string line = heard_.substr(0, end);
  heard_.erase(0, end + 1);
  return line;
}

int ChildProcess::wait() {
  int status = 0;
  if (process_ <= 0) return status;
  shutdown(line_, SHUT_WR);
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  return status;
}

void ChildProcess::finish() {
  if (wait() != 0) throw std::runtime_error(name_ + ", in a process of its own, failed");
}

}  // namespace drevin::bench
