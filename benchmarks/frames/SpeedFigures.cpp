#include <fmt/format.h>

#include "frames/Figures.h"
#include "frames/FrameBench.h"

namespace drevin::bench {

namespace {

/// A picture with the ratios that it must reach and should.
struct SpeedGoal {
  std::string name;
  FrameCase picture;
  int reach;
  int aim;
};

TableLine speedLine(const SpeedGoal& goal, const TablePlan& plan) {
  FrameBench bench(goal.picture, plan);
  bench.timeAll();
  const FrameErrors errors = bench.errors();
  TableLine line;
  line.figure = goal.name;
  line.ours = secondsText(bench.frameSeconds());
  line.literal = secondsText(bench.literalSeconds());
  line.node = secondsText(bench.nodeSeconds());
  line.value = timesText(bench.literalSeconds() / bench.frameSeconds());
  line.reach = fmt::format("{}×", goal.reach);
  line.aim = fmt::format("{}×", goal.aim);
  line.error = errors.picture;
  line.otherError = errors.rows;
  return line;
}

SpeedGoal flatGoal(const std::string& scene, int blur, const TablePlan& plan, int reach, int aim) {
  return {fmt::format("{}, {} px", scene, blur), frameCase(scene, blur, plan.frame), reach, aim};
}

SpeedGoal deepGoal(int blur, int samples, bool thick, const TablePlan& plan) {
  return {
      fmt::format("deep, {} px, {} {} a pixel", blur, samples, thick ? "thick samples" : "points"),
      deepCase("scene", blur, plan.frame, samples, thick), 20, 40};
}

std::vector<SpeedGoal> speedGoals(const TablePlan& plan) {
  return {flatGoal("uniform", plan.largeBlur, plan, 120, 250),
          flatGoal("scene", plan.largeBlur, plan, 25, 45),
          flatGoal("ramp", plan.largeBlur, plan, 15, 30),
          flatGoal("random", plan.largeBlur, plan, 10, 12),
          flatGoal("uniform", plan.middleBlur, plan, 35, 45),
          flatGoal("scene", plan.middleBlur, plan, 9, 14),
          flatGoal("ramp", plan.middleBlur, plan, 7, 9),
          flatGoal("uniform", plan.smallBlur, plan, 2, 4),
          flatGoal("scene", plan.smallBlur, plan, 2, 4),
          flatGoal("ramp", plan.smallBlur, plan, 2, 4),
          flatGoal("random", plan.smallBlur, plan, 2, 4),
          deepGoal(plan.middleBlur, 2, false, plan),
          deepGoal(plan.deepBlur, 2, false, plan),
          deepGoal(plan.middleBlur, 4, true, plan)};
}

}  // namespace

std::vector<Figure> speedFigures(const TablePlan& plan) {
  std::vector<Figure> figures;
  for (const SpeedGoal& goal : speedGoals(plan))
    figures.push_back({goal.name, [goal, plan] { return speedLine(goal, plan); }});
  return figures;
}

}  // namespace drevin::bench
