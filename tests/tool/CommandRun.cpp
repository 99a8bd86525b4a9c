#include "CommandRun.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

void redirect(const std::string& path, int descriptor) {
  const int file = open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
  close(file);
}

void limit(int resource, std::size_t most) {
  if (most == 0) return;
  const rlimit value{most, most};
  if (setrlimit(static_cast<__rlimit_resource>(resource), &value) != 0) _exit(126);
}

void dropPrivileges() {
  constexpr unsigned kNobody = 65534;
  if (geteuid() != 0) return;
  if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(126);
}

/// Made before the process divides: another thread's memory lock would be held for ever in the
/// child.
struct Launch {
  Launch(const std::vector<std::string>& arguments, const RunOptions& options,
         const ScratchFolder& folder)
      : out(folder.file("out")),
        error(folder.file("error")),
        command(options.command.empty() ? DREVIN_COMMAND : options.command) {
    texts.push_back(command.data());
    for (const std::string& text : arguments)
      texts.push_back(const_cast<char*>(text.c_str()));
    texts.push_back(nullptr);
  }
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  std::string out;
  std::string error;
  std::string command;
  std::vector<char*> texts;
};

[[noreturn]] void becomeCommand(const Launch& launch, const RunOptions& options) {
  redirect(launch.out, STDOUT_FILENO);
  redirect(launch.error, STDERR_FILENO);
  for (const auto& [name, value] : options.environment)
    setenv(name.c_str(), value.c_str(), 1);
  if (options.unprivileged) dropPrivileges();
  limit(RLIMIT_AS, options.addressSpace);
  limit(RLIMIT_FSIZE, options.fileSize);
  limit(RLIMIT_NOFILE, options.openFiles);
  if (options.inChild) options.inChild();
  execv(launch.command.c_str(), launch.texts.data());
  _exit(127);
}

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Of all threads of a running process, in whole ticks.
double processorSecondsOf(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  // The name in brackets may hold anything; after it come the state and ten numbers.
  const std::size_t name = text.rfind(')');
  if (name == std::string::npos) return 0.0;
  std::istringstream rest(text.substr(name + 1));
  std::string passedOver;
  for (int i = 0; i < 11; ++i)
    rest >> passedOver;
  double user = 0.0;
  double system = 0.0;
  rest >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

bool hasWorked(pid_t process, double seconds) {
  return seconds <= 0.0 || processorSecondsOf(process) >= seconds;
}

struct End {
  int status = 0;
  rusage usage{};
  double secondsAfterSignal = 0.0;
  double processorSecondsBefore = 0.0;  ///< the signal
};

// Whether the process has begun to handle that signal by itself; those that it never does need no
// handler.
bool handles(pid_t process, int signal) {
  if (signal != SIGINT && signal != SIGTERM) return true;
  const std::string status = bytesOfFile("/proc/" + std::to_string(process) + "/status");
  const std::string name = "\nSigCgt:";
  const std::size_t at = status.find(name);
  if (at == std::string::npos) return true;
  const auto caught = std::strtoull(status.c_str() + at + name.size(), nullptr, 16);
  return (caught >> (signal - 1) & 1U) != 0;
}

// Waits for the end, sending the signal that was asked for, and SIGKILL when time is out.
End waitFor(pid_t process, const RunOptions& options) {
  const auto start = Clock::now();
  std::optional<Clock::time_point> handled;
  std::optional<Clock::time_point> signalled;
  End end;
  while (wait4(process, &end.status, WNOHANG, &end.usage) == 0) {
    if (options.signal != 0 && !handled && handles(process, options.signal)) handled = Clock::now();
    const bool due = handled && secondsSince(*handled) >= options.signalAfterSeconds &&
                     hasWorked(process, options.signalAfterProcessorSeconds) &&
                     (!options.signalWhen || options.signalWhen());
    if (!signalled && due) {
      end.processorSecondsBefore = processorSecondsOf(process);
      kill(process, options.signal);
      signalled = Clock::now();
    }
    if (secondsSince(start) > options.timeoutSeconds) kill(process, SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  if (signalled) end.secondsAfterSignal = secondsSince(*signalled);
  return end;
}

}  // namespace

RunResult runCommand(const std::vector<std::string>& arguments, const RunOptions& options) {
  const ScratchFolder folder;
  const Launch launch(arguments, options, folder);
  const auto start = Clock::now();
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("cannot fork");
  if (process == 0) becomeCommand(launch, options);
  const End end = waitFor(process, options);
  RunResult result;
  result.seconds = secondsSince(start);
  result.secondsAfterSignal = end.secondsAfterSignal;
  result.processorSeconds = secondsOf(end.usage.ru_utime) + secondsOf(end.usage.ru_stime);
  if (end.secondsAfterSignal > 0.0)
    result.processorSecondsAfterSignal = result.processorSeconds - end.processorSecondsBefore;
  result.peakKibibytes = end.usage.ru_maxrss;
  result.exitCode = WIFEXITED(end.status) ? WEXITSTATUS(end.status) : -1;
  result.out = bytesOfFile(folder.file("out"));
  result.error = bytesOfFile(folder.file("error"));
  return result;
}

std::vector<std::string> linesStarting(const std::string& text, const std::string& start) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind(start, 0) == 0) lines.push_back(line);
  }
  return lines;
}

bool isOneErrorLine(const std::string& error) {
  std::istringstream stream(error);
  int errors = 0;
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind("drevin: error: ", 0) == 0) {
      ++errors;
    } else if (line.rfind("drevin: warning: ", 0) != 0 && line.rfind("Progress: ", 0) != 0) {
      return false;
    }
  }
  return errors == 1 && error.back() == '\n';
}

std::vector<std::string> renderArguments(const std::string& input, const std::string& output,
                                         const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"render",  "--quiet", "--plugin", builtPlugin(),
                                        "--input", input,     "--output", output};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

std::vector<std::string> deepArguments(const std::string& deep, const std::string& output,
                                       const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {"render", "--quiet", "--plugin", builtPlugin(),
                                        "--deep", deep,      "--output", output};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

bool canRunUnprivileged() {
  RunOptions options;
  options.unprivileged = true;
  return runCommand({"controls", "--plugin", builtPlugin()}, options).exitCode == 0;
}

std::string builtPlugin() {
  return DREVIN_PLUGIN_FILE;
}

}  // namespace drevintool::testing
