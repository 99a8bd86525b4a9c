#pragma once

/// Progress on standard error: a bar on a terminal, lines elsewhere.

#include <chrono>
#include <string>

#include "EmbeddedHost/Render.h"

namespace drevintool {

/// On a terminal that can be drawn on one line that is drawn over itself, with the stage, how far
/// it is and the time left; elsewhere lines "Progress: 42%", at most one a second, of the stages
/// that tell how far they are; the number never falls. Clears its line when destroyed.
class ProgressDisplay {
 public:
  explicit ProgressDisplay(bool quiet);
  ~ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;

  void show(const embedded::Progress& progress);
  /// The render is whole.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;

  double secondsLeft(const embedded::Progress& progress, double share);
  void drawBar(const embedded::Progress& progress, double share, double secondsLeft);
  void printLine(double secondsLeft);

  bool quiet_;
  bool terminal_;
  bool drawn_ = false;
  std::string stage_;        // that is being timed
  double firstShare_ = 0.0;  // of it, when it was first shown
  Clock::time_point stageStart_;
  int percent_ = 0;
  Clock::time_point lastLine_;
};

}  // namespace drevintool
