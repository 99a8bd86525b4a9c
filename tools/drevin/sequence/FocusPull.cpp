#include "sequence/FocusPull.h"

#include <set>
#include <utility>

#include "terminal/ExitCode.h"
#include "terminal/Messages.h"

namespace drevintool {
namespace {

/// Looks at a frame that is rendered, and told of, by another job or by none.
class FocusJob : public FrameJob {
 public:
  using FrameJob::FrameJob;

 protected:
  void tellWarning(const std::string& /*text*/) override {}
  void tellNote(const std::string& /*text*/) override {}
};

RenderArguments argumentsFor(const SequencePlan& plan, const FrameTask& task) {
  RenderArguments arguments = plan.argumentsOf(task);
  arguments.skipExisting = false;
  arguments.kernel.clear();
  arguments.mattes.clear();
  arguments.camera.clear();
  return arguments;
}

float distanceAt(const FrameShare& share, const SequencePlan& plan, const FrameTask& task,
                 const FocusPoint& point) {
  try {
    return FocusJob(share, task, argumentsFor(plan, task), nullptr).focusDistance(point);
  } catch (const ToolError& error) {
    throw ToolError(error.code(), withFrameName(task, error.what()));
  }
}

std::set<std::string> viewsOf(const SequencePlan& plan) {
  std::set<std::string> views;
  for (const FrameTask& task : plan.tasks())
    views.insert(task.view);
  return views;
}

}  // namespace

FocusPull::FocusPull(const FrameShare& share, const SequencePlan& plan,
                     const std::vector<FocusKey>& keys) {
  FrameShare silent = share;
  silent.files = nullptr;
  for (const std::string& view : viewsOf(plan)) {
    std::vector<CurveKey> curve;
    for (const FocusKey& key : keys) {
      const FrameTask task{key.frame, view};
      const float distance = distanceAt(silent, plan, task, key.point);
      curve.push_back({static_cast<double>(key.frame), static_cast<double>(distance), false});
      printNote(withFrameName(task, focusLine(distance, key.point)));
    }
    curves_.emplace(view, ControlCurve(std::move(curve)));
  }
}

double FocusPull::at(const FrameTask& task) const {
  return curves_.at(task.view).at(task.frame.value_or(0));
}

}  // namespace drevintool
