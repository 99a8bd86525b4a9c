#include "sequence/SequenceRender.h"

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>
#include <utility>

#include "EmbeddedHost/Render.h"
#include "picture/ExrHeaderScan.h"
#include "sequence/FocusPull.h"
#include "sequence/FramesInFlight.h"
#include "terminal/Messages.h"
#include "terminal/SequenceProgress.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

std::int64_t pixelsOf(const std::string& path) {
  const ExrFacts facts = scanExrHeader(path);
  const ExrWindow window = facts.parts.empty() ? ExrWindow() : facts.parts.front().dataWindow;
  return facts.parts.empty() ? 0 : window.width() * window.height();
}

// Of the first picture that is there; 0 if none is.
std::int64_t pixelsOf(const SequencePlan& plan) {
  for (const FrameTask& task : plan.tasks()) {
    throwIfInterrupted();
    const RenderArguments arguments = plan.argumentsOf(task);
    const std::string& file = arguments.input.empty() ? arguments.deep : arguments.input;
    std::error_code error;
    // What is not there would be looked for among its neighbours.
    if (!std::filesystem::exists(file, error)) continue;
    try {
      return pixelsOf(file);
    } catch (const ToolError&) {
      // Damaged: the next one tells as much.
    }
  }
  return 0;
}

class SequenceRender {
 public:
  SequenceRender(const FrameShare& share, const SequencePlan& plan,
                 const RenderArguments& arguments, unsigned threads)
      : files_(plan.sharedFiles()),
        share_{share.description, share.changes, share.wantsReport, &files_},
        plan_(plan),
        arguments_(arguments),
        inFlight_(chooseFramesInFlight(arguments, pixelsOf(plan), threads, plan.tasks().size())),
        threads_(threads),
        progress_(arguments.quiet, plan.tasks().size()) {
    shareThreads(threads, inFlight_);
  }

  int run() {
    findFocus();
    runFrames(
        plan_.tasks().size(),
        {inFlight_, arguments_.skipBadFrames, [this](std::size_t index) { tellOnceMore(index); }},
        [this](std::size_t index) { return makeJob(index); },
        [this](std::size_t index, FrameOutcome outcome) { end(index, std::move(outcome)); });
    progress_.clear();
    // What was done before an interrupt is told as well.
    if (!arguments_.report.empty() && !plan_.reportsEach()) writeReportOfAll();
    throwIfInterrupted();
    tellSkipped();
    return tellFailed();
  }

 private:
  // Before the first frame, for each depends on all points.
  void findFocus() {
    if (arguments_.focusKeys.empty()) return;
    focus_.emplace(share_, plan_, arguments_.focusKeys);
    share_.focus = &*focus_;
  }

  std::unique_ptr<FrameWork> makeJob(std::size_t index) {
    const FrameTask& task = plan_.tasks()[index];
    RenderArguments arguments = plan_.argumentsOf(task);
    arguments.threads = threadsOfFrame(threads_, inFlight_, index);
    const auto show = [this, index](const embedded::Progress& progress) {
      progress_.show(index, progress);
    };
    return std::make_unique<FrameJob>(share_, task, std::move(arguments), show);
  }

  void tellOnceMore(std::size_t index) {
    if (arguments_.quiet) return;
    progress_.clear();
    printNote(withFrameName(plan_.tasks()[index],
                            "there was not enough memory beside other frames; once more alone "
                            "(--frames-in-flight 1 avoids that)"));
  }

  // Called for one frame at a time.
  void end(std::size_t index, FrameOutcome outcome) {
    if (caughtSignal() != 0 && outcome.failed()) return;
    const FrameTask& task = plan_.tasks()[index];
    if (outcome.skipped) skipped_.push_back(task);
    if (arguments_.skipBadFrames) tellErrors(task, outcome);
    if (!arguments_.report.empty() && !plan_.reportsEach()) {
      reports_[index] = reportOf(task, outcome);
    }
    if (outcome.failed()) {
      failures_[index] = std::move(outcome);
    } else {
      progress_.frameDone(index);
    }
  }

  static Json reportOf(const FrameTask& task, const FrameOutcome& outcome) {
    Json report;
    if (task.frame) report["frame"] = *task.frame;
    if (!task.view.empty()) report["view"] = task.view;
    report["exitCode"] = static_cast<int>(outcome.code);
    report["skipped"] = outcome.skipped;
    report["errors"] = outcome.errors;
    if (outcome.report) report.update(*outcome.report);
    return report;
  }

  void tellErrors(const FrameTask& task, const FrameOutcome& outcome) {
    if (!outcome.failed()) return;
    progress_.clear();
    for (const std::string& error : outcome.errors)
      printError(withFrameName(task, error));
  }

  void writeReportOfAll() {
    Json report;
    report["command"] = "drevin " DREVIN_VERSION;
    report["framesInFlight"] = inFlight_;
    report["frames"] = Json::array();
    for (auto& [index, frame] : reports_)
      report["frames"].push_back(std::move(frame));
    writeReport(report, arguments_.report);
  }

  void tellSkipped() const {
    if (skipped_.empty() || arguments_.quiet) return;
    printNote(std::to_string(skipped_.size()) + " of " + std::to_string(plan_.tasks().size()) +
              " pictures were there already: " + frameNames(skipped_));
  }

  int tellFailed() {
    if (failures_.empty()) {
      progress_.finish();
      return static_cast<int>(ExitCode::Done);
    }
    const auto& [index, first] = *failures_.begin();
    if (!arguments_.skipBadFrames) {
      tellErrors(plan_.tasks()[index], first);
      return static_cast<int>(first.code);
    }
    std::vector<FrameTask> failed;
    failed.reserve(failures_.size());
    for (const auto& [number, outcome] : failures_)
      failed.push_back(plan_.tasks()[number]);
    printError(std::to_string(failed.size()) + " of " + std::to_string(plan_.tasks().size()) +
               " pictures failed: " + frameNames(failed));
    return static_cast<int>(ExitCode::RenderFailed);
  }

  SharedFiles files_;
  FrameShare share_;
  std::optional<FocusPull> focus_;
  const SequencePlan& plan_;
  const RenderArguments& arguments_;
  const unsigned inFlight_;
  const unsigned threads_;  // of all frames
  SequenceProgress progress_;
  std::vector<FrameTask> skipped_;
  std::map<std::size_t, FrameOutcome> failures_;
  std::map<std::size_t, Json> reports_;
};

}  // namespace

int renderSequence(const FrameShare& share, const SequencePlan& plan,
                   const RenderArguments& arguments, unsigned threads) {
  plan.checkInputs();
  return SequenceRender(share, plan, arguments, threads).run();
}

}  // namespace drevintool
