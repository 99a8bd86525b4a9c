#include "frames/PeakMemory.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "EmbeddedHost/Render.h"
#include "frames/FrameNode.h"

namespace drevin::bench {

namespace {

/// A line of this process's status, in bytes.
double statusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(name + ":", 0) == 0) return 1024.0 * std::stod(line.substr(name.size() + 1));
  }
  throw std::runtime_error("no " + name + " in /proc/self/status: memory cannot be measured here");
}

/// The peak becomes what is resident now.
void forgetPeak() {
  malloc_trim(0);
  std::ofstream clear("/proc/self/clear_refs");
  clear << "5" << std::flush;
  if (!clear) throw std::runtime_error("/proc/self/clear_refs: the peak cannot be reset here");
}

std::string readAll(int file) {
  std::string text;
  std::array<char, 256> part{};
  for (ssize_t n = read(file, part.data(), part.size()); n > 0;
       n = read(file, part.data(), part.size()))
    text.append(part.data(), static_cast<std::size_t>(n));
  return text;
}

[[noreturn]] void runThisProgram(std::vector<std::string> arguments, int output) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  execv("/proc/self/exe", pointers.data());
  _exit(127);
}

/// What this program writes, run with these arguments.
std::string outputOfChild(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe to a child process");
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) runThisProgram(arguments, ends[1]);
  close(ends[1]);
  std::string text = readAll(ends[0]);
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0)
    throw std::runtime_error("the process that measures memory failed");
  return text;
}

}  // namespace

PeakMemory measurePeakMemory(const FrameSize& size, double blur, unsigned threads) {
  embedded::setThreadCount(threads);
  const FrameCase picture = frameCase("scene", blur, size);
  FrameNode node(picture, framePictures(picture));
  forgetPeak();
  PeakMemory memory;
  memory.before = statusBytes("VmRSS");
  node.render();
  memory.peak = statusBytes("VmHWM");
  return memory;
}

PeakMemory peakMemoryOfChild(const FrameSize& size, double blur, unsigned threads) {
  std::istringstream text(outputOfChild(
      {"drevin_frames", "--memory", "--threads", fmt::format("{}", threads), "scene",
       fmt::format("{}", blur), fmt::format("{}", size.width), fmt::format("{}", size.height)}));
  PeakMemory memory;
  text >> memory.before >> memory.peak;
  if (!text) throw std::runtime_error("the process that measures memory told nothing");
  return memory;
}

}  // namespace drevin::bench
