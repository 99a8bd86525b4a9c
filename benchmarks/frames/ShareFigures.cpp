#include <fmt/format.h>

#include "DDImage/Thread.h"
#include "frames/Figures.h"
#include "frames/FrameBench.h"
#include "frames/Measure.h"
#include "frames/PictureDifference.h"
#include "frames/SideBySide.h"

namespace drevin::bench {

using DD::Image::Box;

namespace {

Box middleOf(const FrameSize& size, int side) {
  const int x = (size.width - side) / 2;
  const int y = (size.height - side) / 2;
  return {x, y, x + side, y + side};
}

TableLine viewLine(const TablePlan& plan) {
  FrameBench whole(frameCase("scene", plan.largeBlur, plan.fourK), plan);
  std::vector<double> times;
  embedded::RenderResult view;
  for (int round = 0; round < plan.rounds; ++round) {
    whole.timeFrame();
    times.push_back(
        secondsOf([&] { view = whole.node().render(middleOf(plan.fourK, plan.view)); }));
  }
  TableLine line;
  line.figure =
      fmt::format("view of {0} × {0} px in a 4K frame, scene, {1} px", plan.view, plan.largeBlur);
  line.ours =
      fmt::format("{} of {}", secondsText(median(times)), secondsText(whole.frameSeconds()));
  line.value = percentText(median(times) / whole.frameSeconds());
  line.reach = "≤ 6 %";
  line.error = differenceOf(view.image, whole.result().image);
  return line;
}

TableLine threadLine(const std::string& scene, const TablePlan& plan) {
  const FrameCase picture = frameCase(scene, plan.largeBlur, plan.frame);
  FrameBench one(picture, plan);
  FrameBench two(picture, plan);
  SideBySide pair(2, picture);
  std::vector<double> pairTimes;
  const unsigned before = DD::Image::Thread::numCPUs;
  for (int round = 0; round < plan.rounds; ++round) {
    embedded::setThreadCount(1);
    one.timeFrame();
    embedded::setThreadCount(2);
    two.timeFrame();
    pairTimes.push_back(pair.seconds());
  }
  embedded::setThreadCount(before);
  TableLine line;
  line.figure = fmt::format("threads 1 to 2, of what two renders side by side reach, {}, {} px",
                            scene, plan.largeBlur);
  line.ours = fmt::format("{} to {} (side by side {})", secondsText(one.frameSeconds()),
                          secondsText(two.frameSeconds()), secondsText(median(pairTimes)));
  line.value = fmt::format("{} of {}", timesText(one.frameSeconds() / two.frameSeconds()),
                           timesText(2.0 * one.frameSeconds() / median(pairTimes)));
  line.reach = "1.85×";
  line.aim = "1.95×";
  line.error = differenceOf(one.result().image, two.result().image);
  line.mostError = 0.0;
  return line;
}

/// Seconds of the stages before the picture itself.
double kernelSeconds(const embedded::RenderResult& result) {
  double seconds = 0.0;
  for (const embedded::Stage& stage : result.stages) {
    if (stage.name == "Aperture" || stage.name == "Size estimate" || stage.name == "Kernels")
      seconds += stage.seconds;
  }
  return seconds;
}

TableLine kernelShareLine(const TablePlan& plan) {
  FrameBench frame(frameCase("scene", plan.largeBlur, plan.frame), plan);
  std::vector<double> kernels;
  for (int round = 0; round < plan.rounds; ++round) {
    frame.timeFrame();
    kernels.push_back(kernelSeconds(frame.result()));
  }
  TableLine line;
  line.figure = fmt::format("size estimate and kernels, scene, {} px", plan.largeBlur);
  line.ours =
      fmt::format("{} of {}", secondsText(median(kernels)), secondsText(frame.frameSeconds()));
  line.value = percentText(median(kernels) / frame.frameSeconds());
  line.reach = "few percent";
  return line;
}

}  // namespace

std::vector<Figure> shareFigures(const TablePlan& plan) {
  return {{"view", [plan] { return viewLine(plan); }},
          {"threads, scene", [plan] { return threadLine("scene", plan); }},
          {"threads, uniform", [plan] { return threadLine("uniform", plan); }},
          {"kernels", [plan] { return kernelShareLine(plan); }}};
}

}  // namespace drevin::bench
