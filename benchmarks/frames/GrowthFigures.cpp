#include <fmt/format.h>

#include "frames/Figures.h"
#include "frames/FrameBench.h"

namespace drevin::bench {

namespace {

TableLine growthLine(const std::string& scene, const TablePlan& plan) {
  FrameBench small(frameCase(scene, plan.growthBlur, plan.frame), plan);
  FrameBench large(frameCase(scene, plan.largeBlur, plan.frame), plan);
  for (int round = 0; round < plan.rounds; ++round) {
    small.timeFrame();
    large.timeFrame();
  }
  TableLine line;
  line.figure = fmt::format("growth, {}, {} px over {} px", scene, plan.largeBlur, plan.growthBlur);
  line.ours = fmt::format("{} over {}", secondsText(large.frameSeconds()),
                          secondsText(small.frameSeconds()));
  line.value = timesText(large.frameSeconds() / small.frameSeconds());
  line.error = small.errors().picture;
  return line;
}

}  // namespace

std::vector<Figure> growthFigures(const TablePlan& plan) {
  const auto figure = [&plan](const std::string& scene, const std::string& reach,
                              const std::string& aim) {
    return Figure{"growth, " + scene, [=] {
                    TableLine line = growthLine(scene, plan);
                    line.reach = reach;
                    line.aim = aim;
                    return line;
                  }};
  };
  return {figure("uniform", "≤ 3×", "≤ 2×"), figure("scene", "≤ 8×", "≤ 5×")};
}

}  // namespace drevin::bench
