#include "terminal/Progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "terminal/ProgressBar.h"
#include "terminal/StandardError.h"
#include "terminal/Terminal.h"

namespace drevintool {
namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

ProgressDisplay::ProgressDisplay(bool quiet)
    : quiet_(quiet), terminal_(drawsOnError()), lastLine_(Clock::now()) {}

ProgressDisplay::~ProgressDisplay() {
  if (drawn_) writeStandardError(kClearLine);
}

void ProgressDisplay::show(const embedded::Progress& progress) {
  if (quiet_) return;
  const double share = shareOf(progress);
  const double left = secondsLeft(progress, share);
  percent_ = std::max(percent_, static_cast<int>(share * 100.0));
  if (terminal_) {
    drawBar(progress, share, left);
  } else if (share > 0.0) {
    printLine(left);
  }
}

// -1 if it cannot be told yet.
double ProgressDisplay::secondsLeft(const embedded::Progress& progress, double share) {
  if (progress.stage != stage_) {
    stage_ = progress.stage;
    firstShare_ = share;
    stageStart_ = Clock::now();
  }
  const double done = share - firstShare_;
  return done > 0.0 ? secondsSince(stageStart_) * (1.0 - share) / done : -1.0;
}

void ProgressDisplay::drawBar(const embedded::Progress& progress, double share,
                              double secondsLeft) {
  std::string text = fmt::format("{}{:<14.14}", kClearLine, progress.stage);
  if (share > 0.0 || progress.rowsTotal > 0) {
    text += barText(share,
                    progress.rowsTotal > 0
                        ? fmt::format("{}/{} rows", progress.rowsDone, progress.rowsTotal)
                        : fmt::format("{}%", static_cast<int>(share * 100.0)),
                    secondsLeft);
  }
  writeStandardError(text);
  drawn_ = true;
}

// The last second is left to the line that says 100%.
void ProgressDisplay::printLine(double secondsLeft) {
  constexpr double kInterval = 1.0;
  const bool nearlyDone = secondsLeft >= 0.0 && secondsLeft < kInterval;
  if (nearlyDone || secondsSince(lastLine_) < kInterval) return;
  lastLine_ = Clock::now();
  writeStandardError(fmt::format("Progress: {}%\n", percent_));
}

void ProgressDisplay::finish() {
  if (quiet_) return;
  if (drawn_) writeStandardError(kClearLine);
  drawn_ = false;
  if (!terminal_) writeStandardError("Progress: 100%\n");
}

}  // namespace drevintool
