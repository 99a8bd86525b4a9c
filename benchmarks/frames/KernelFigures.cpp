#include <fmt/format.h>

#include <memory>

#include "frames/Figures.h"
#include "frames/FrameBench.h"

namespace drevin::bench {

namespace {

/// A picture whose time is told as that of the default aperture's.
struct KernelGoal {
  std::string name;
  FrameCase picture;
  std::string reach;
  std::string aim;
  bool plainRows = true;  ///< whether the plain row-by-row form knows all of it
};

constexpr int blades = 2;

KernelGoal softGoal(const FrameCase& plain, float softness) {
  FrameCase picture = plain;
  picture.settings.softness = softness;
  return {fmt::format("softness {:g}", softness), picture, "≤ 1.4×", "≤ 1.1×"};
}

KernelGoal bladedGoal(const FrameCase& plain) {
  FrameCase picture = plain;
  picture.settings.kernelType = blades;
  picture.settings.numSides = 6;
  picture.settings.bladeCurvature = 0.0F;
  return {"six straight blades", picture, "≤ 1.4×", "≤ 1.1×"};
}

KernelGoal colouredGoal(const FrameCase& plain) {
  return {"aperture image, coloured", withColouredAperture(plain), "≤ 1.4×", "≤ 1.1×"};
}

KernelGoal brightGoal(const FrameCase& plain) {
  return {"window a hundred times brighter", withBrightWindow(plain), "", ""};
}

KernelGoal effectsGoal(const FrameCase& plain, float chromaticAberration) {
  return {fmt::format("chromatic aberration {:g}, bloom, three mattes", chromaticAberration),
          withEffects(plain, chromaticAberration), "≤ 1.6×", "≤ 1.25×", false};
}

TableLine kernelLine(const KernelGoal& goal, const FrameBench& bench, const FrameBench& plain) {
  const FrameErrors errors = bench.errors();
  TableLine line;
  line.figure = goal.name;
  line.ours = fmt::format("{} (default {})", secondsText(bench.frameSeconds()),
                          secondsText(plain.frameSeconds()));
  if (goal.plainRows) line.literal = secondsText(bench.literalSeconds());
  line.node = secondsText(bench.nodeSeconds());
  line.value = timesText(bench.frameSeconds() / plain.frameSeconds());
  line.reach = goal.reach;
  line.aim = goal.aim;
  line.error = errors.picture;
  line.otherError = errors.rows;
  return line;
}

/// The default aperture and this one in turn.
TableLine measured(const KernelGoal& goal, const FrameCase& plain, const TablePlan& plan) {
  FrameBench usual(plain, plan);
  FrameBench bench(goal.picture, plan);
  for (int round = 0; round < plan.rounds; ++round) {
    usual.timeFrame();
    bench.timeFrame();
    if (goal.plainRows) bench.timeLiteralRows();
    bench.timeNodeRows();
  }
  return kernelLine(goal, bench, usual);
}

}  // namespace

std::vector<Figure> kernelFigures(const TablePlan& plan) {
  const FrameCase plain = frameCase("scene", plan.largeBlur, plan.frame);
  std::vector<Figure> figures;
  for (const KernelGoal& goal :
       {bladedGoal(plain), softGoal(plain, 0.0F), softGoal(plain, 0.3F), softGoal(plain, 1.0F),
        colouredGoal(plain), effectsGoal(plain, 0.2F), effectsGoal(plain, 1.0F),
        effectsGoal(plain, 4.0F), brightGoal(plain)}) {
    figures.push_back({goal.name, [goal, plain, plan] { return measured(goal, plain, plan); }});
  }
  return figures;
}

}  // namespace drevin::bench
