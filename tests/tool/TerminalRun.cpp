#include "TerminalRun.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace drevintool::testing {
namespace {

[[noreturn]] void runOn(int end, const std::vector<std::string>& arguments,
                        const std::map<std::string, std::string>& environment) {
  dup2(end, STDERR_FILENO);
  for (const auto& [name, value] : environment)
    setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> texts = {const_cast<char*>(DREVIN_COMMAND)};
  for (const std::string& argument : arguments)
    texts.push_back(const_cast<char*>(argument.c_str()));
  texts.push_back(nullptr);
  execv(DREVIN_COMMAND, texts.data());
  _exit(127);
}

// Until the other end is closed.
std::string allOf(int terminal) {
  std::string text;
  std::array<char, 4096> piece{};
  for (ssize_t count = 1; count > 0;) {
    count = read(terminal, piece.data(), piece.size());
    if (count > 0) text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

std::string onTerminal(const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) return {};
  const int end = open(ptsname(terminal), O_RDWR | O_NOCTTY);
  const pid_t process = fork();
  if (process == 0) runOn(end, arguments, environment);
  close(end);
  const std::string text = allOf(terminal);
  int status = 0;
  waitpid(process, &status, 0);
  close(terminal);
  return text;
}

}  // namespace drevintool::testing
