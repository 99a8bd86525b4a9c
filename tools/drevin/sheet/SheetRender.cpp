#include "sheet/SheetRender.h"

#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <utility>

#include "sequence/FramesInFlight.h"
#include "terminal/Messages.h"
#include "terminal/SequenceProgress.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

class SheetRender {
 public:
  SheetRender(const DD::Image::Op::Description& description, const SheetPlan& plan,
              SheetShare share, const std::vector<ControlChanges>& changes, unsigned threads)
      : description_(description),
        plan_(plan),
        share_(std::move(share)),
        changes_(changes),
        wantsReport_(!share_.arguments.report.empty()),
        inFlight_(chooseFramesInFlight(share_.arguments, pixels(), threads, plan.pictures())),
        threads_(threads),
        progress_(share_.arguments.quiet, plan.pictures(), "Picture"),
        pictures_(plan.pictures()) {
    shareThreads(threads, inFlight_);
    share_.arguments.report.clear();
  }

  std::vector<SheetPicture> run(ExitCode& code) {
    runFrames(
        plan_.pictures(), {inFlight_, false},
        [this](std::size_t picture) { return makeCell(picture); },
        [this](std::size_t picture, FrameOutcome outcome) { end(picture, std::move(outcome)); });
    progress_.clear();
    messages_.print(plan_);
    throwIfInterrupted();
    if (failures_.empty()) {
      progress_.finish();
      return std::move(pictures_);
    }
    const auto& [picture, first] = *failures_.begin();
    tellErrors(picture, first);
    code = first.code;
    return {};
  }

 private:
  std::int64_t pixels() const { return std::int64_t{share_.whole.width} * share_.whole.height; }

  std::unique_ptr<FrameWork> makeCell(std::size_t picture) {
    const auto show = [this, picture](const embedded::Progress& progress) {
      progress_.show(picture, progress);
    };
    const auto keep = [this, picture](SmallPicture small) {
      pictures_[picture].picture = std::move(small);
    };
    const FrameShare frame{description_, changes_[picture], wantsReport_};
    return std::make_unique<SheetCell>(share_, frame, picture,
                                       threadsOfFrame(threads_, inFlight_, picture), show,
                                       messages_, keep);
  }

  // Called for one picture at a time.
  void end(std::size_t picture, FrameOutcome outcome) {
    if (outcome.failed()) {
      failures_[picture] = std::move(outcome);
      return;
    }
    pictures_[picture].report = std::move(outcome.report);
    progress_.frameDone(picture);
  }

  // Errors of the node do not say by themselves which settings they are about.
  void tellErrors(std::size_t picture, const FrameOutcome& outcome) const {
    const bool ofNode = outcome.code == ExitCode::RenderFailed;
    for (const std::string& error : outcome.errors)
      printError(ofNode ? plan_.nameOf(picture) + ": " + error : error);
  }

  const DD::Image::Op::Description& description_;
  const SheetPlan& plan_;
  SheetShare share_;
  const std::vector<ControlChanges>& changes_;
  const bool wantsReport_;
  const unsigned inFlight_;
  const unsigned threads_;  // of all pictures
  SequenceProgress progress_;
  SheetMessages messages_;
  std::vector<SheetPicture> pictures_;
  std::map<std::size_t, FrameOutcome> failures_;
};

bool sameBits(const SmallPicture& a, const SmallPicture& b) {
  for (std::size_t c = 0; c < a.planes.size(); ++c) {
    const std::size_t bytes = a.planes[c].size() * sizeof(float);
    if (a.planes[c].size() != b.planes[c].size()) return false;
    if (std::memcmp(a.planes[c].data(), b.planes[c].data(), bytes) != 0) return false;
  }
  return a.size.width == b.size.width;
}

// Pictures that differ in one control alone are `stride` apart.
bool hasEffect(const std::vector<SheetPicture>& pictures, std::size_t stride, std::size_t values) {
  for (std::size_t picture = 0; picture < pictures.size(); ++picture) {
    if (picture / stride % values == 0) continue;
    if (!sameBits(pictures[picture].picture, pictures[picture - stride].picture)) return true;
  }
  return false;
}

}  // namespace

std::vector<SheetPicture> renderSheet(const DD::Image::Op::Description& description,
                                      const SheetPlan& plan, const SheetShare& share,
                                      const std::vector<ControlChanges>& changes, unsigned threads,
                                      ExitCode& code) {
  return SheetRender(description, plan, share, changes, threads).run(code);
}

std::vector<std::string> controlsWithoutEffect(const SheetPlan& plan,
                                               const std::vector<SheetPicture>& pictures) {
  std::vector<std::string> names;
  std::size_t stride = 1;
  for (const VariedControl& varied : plan.varied()) {
    const std::size_t values = varied.values.size();
    if (values > 1 && !hasEffect(pictures, stride, values)) names.push_back(varied.name);
    stride *= values;
  }
  return names;
}

}  // namespace drevintool
