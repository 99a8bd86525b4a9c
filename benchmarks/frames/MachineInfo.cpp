#include "frames/MachineInfo.h"

#include <fmt/format.h>

#include <array>
#include <cstdlib>
#include <fstream>

#include "DDImage/Thread.h"
#include "EmbeddedHost/Render.h"
#include "engine/Simd.h"

namespace drevin::bench {

namespace {

std::string processorName() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);) {
    const std::size_t colon = line.find(": ");
    if (line.rfind("model name", 0) == 0 && colon != std::string::npos)
      return line.substr(colon + 2);
  }
  return "unknown processor";
}

std::string compilerName() {
#if defined(__clang__)
  return fmt::format("Clang {}", __clang_version__);
#else
  return fmt::format("GCC {}", __VERSION__);
#endif
}

}  // namespace

std::string machineInfo() {
  std::array<double, 1> load{};
  if (getloadavg(load.data(), 1) != 1) load[0] = 0.0;
  return fmt::format("{}, {} of {} threads, {}, {}, load {:.1f} before", processorName(),
                     DD::Image::Thread::numCPUs, embedded::usableProcessors(),
                     simdLevelName(simdLevel()), compilerName(), load[0]);
}

}  // namespace drevin::bench
