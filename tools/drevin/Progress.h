#pragma once

/// Progress on standard error: a bar on a terminal, lines elsewhere.

#include <chrono>

#include "EmbeddedHost/Render.h"

namespace drevintool {

/// On a terminal one line that is drawn over itself, with the stage, the rows and the time left;
/// elsewhere lines "Progress: 42%", at most one a second. Clears its line when destroyed.
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

  void drawBar(const embedded::Progress& progress, double secondsLeft);
  void printLine(int percent, double secondsLeft);

  bool quiet_;
  bool terminal_;
  bool drawn_ = false;
  bool rowsBegun_ = false;
  int firstRow_ = 0;  // rows that were done when rows were first shown
  Clock::time_point rowsStart_;
  Clock::time_point lastLine_;
};

}  // namespace drevintool
