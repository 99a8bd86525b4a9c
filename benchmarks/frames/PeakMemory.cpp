#include "frames/PeakMemory.h"

#include <fmt/format.h>
#include <malloc.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "EmbeddedHost/Render.h"
#include "frames/ChildProcess.h"
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
  ChildProcess child(
      thisProgram(),
      {"drevin_frames", "--memory", "--threads", fmt::format("{}", threads), "scene",
       fmt::format("{}", blur), fmt::format("{}", size.width), fmt::format("{}", size.height)});
  std::istringstream text(child.answer());
  child.finish();
  PeakMemory memory;
  text >> memory.before >> memory.peak;
  if (!text) throw std::runtime_error("the process that measures memory told nothing");
  return memory;
}

}  // namespace drevin::bench
