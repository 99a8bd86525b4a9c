#include <fmt/format.h>

#include "DDImage/Thread.h"
#include "frames/Figures.h"
#include "frames/PeakMemory.h"

namespace drevin::bench {

namespace {

TableLine memoryLine(const std::string& name, const FrameSize& size, double blur) {
  const PeakMemory memory = peakMemoryOfChild(size, blur, DD::Image::Thread::numCPUs);
  TableLine line;
  line.figure = fmt::format("{}, scene, {} px: peak above the picture to blur", name, blur);
  line.ours = fmt::format("{} of {}", gigabytesText(memory.peak - memory.before),
                          gigabytesText(memory.peak));
  line.value = gigabytesText(memory.peak - memory.before);
  return line;
}

}  // namespace

std::vector<Figure> memoryFigures(const TablePlan& plan) {
  const auto figure = [&plan](const std::string& name, const FrameSize& size,
                              const std::string& reach, const std::string& aim) {
    return Figure{name, [name, size, reach, aim, blur = plan.largeBlur] {
                    TableLine line = memoryLine(name, size, blur);
                    line.reach = reach;
                    line.aim = aim;
                    return line;
                  }};
  };
  return {figure("memory, 1080p", plan.frame, "≤ 0.35 GB", "≤ 0.25 GB"),
          figure("memory, 4K", plan.fourK, "≤ 0.9 GB", "≤ 0.65 GB"),
          figure("memory, 8K", plan.eightK, "≤ 1.6 GB", "≤ 1 GB")};
}

}  // namespace drevin::bench
