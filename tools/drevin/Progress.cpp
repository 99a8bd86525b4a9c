#include "Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace drevintool {
namespace {

constexpr const char* kClearLine = "\r\033[K";

std::string durationText(double seconds) {
  const long whole = std::lround(std::min(seconds, 1e6));
  if (whole < 60) return fmt::format("{} s", whole);
  if (whole < 3600) return fmt::format("{}:{:02} min", whole / 60, whole % 60);
  return fmt::format("{}:{:02} h", whole / 3600, whole / 60 % 60);
}

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

ProgressDisplay::ProgressDisplay(bool quiet)
    : quiet_(quiet), terminal_(isatty(STDERR_FILENO) == 1), lastLine_(Clock::now()) {}

ProgressDisplay::~ProgressDisplay() {
  if (drawn_) std::fputs(kClearLine, stderr);
}

void ProgressDisplay::show(const embedded::Progress& progress) {
  if (quiet_) return;
  double left = -1.0;
  if (progress.rowsTotal > 0) {
    if (!rowsBegun_) {
      rowsBegun_ = true;
      firstRow_ = progress.rowsDone;
      rowsStart_ = Clock::now();
    }
    const int done = progress.rowsDone - firstRow_;
    if (done > 0) left = secondsSince(rowsStart_) * (progress.rowsTotal - progress.rowsDone) / done;
  }
  if (terminal_) {
    drawBar(progress, left);
  } else if (progress.rowsTotal > 0) {
    const auto done = static_cast<long long>(progress.rowsDone) * 100;
    printLine(static_cast<int>(done / progress.rowsTotal), left);
  }
}

void ProgressDisplay::drawBar(const embedded::Progress& progress, double secondsLeft) {
  constexpr int kWidth = 30;
  std::string text = fmt::format("{}{:<14.14}", kClearLine, progress.stage);
  if (progress.rowsTotal > 0) {
    const auto full = static_cast<std::size_t>(static_cast<long long>(kWidth) * progress.rowsDone /
                                               progress.rowsTotal);
    text += fmt::format(" [{:<{}}] {}/{} rows", std::string(full, '='), kWidth, progress.rowsDone,
                        progress.rowsTotal);
    if (secondsLeft >= 0.0) text += ", " + durationText(secondsLeft) + " left";
  }
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
  drawn_ = true;
}

// The last second is left to the line that says 100%.
void ProgressDisplay::printLine(int percent, double secondsLeft) {
  constexpr double kInterval = 1.0;
  const bool nearlyDone = secondsLeft >= 0.0 && secondsLeft < kInterval;
  if (nearlyDone || secondsSince(lastLine_) < kInterval) return;
  lastLine_ = Clock::now();
  fmt::print(stderr, "Progress: {}%\n", percent);
}

void ProgressDisplay::finish() {
  if (quiet_) return;
  if (drawn_) std::fputs(kClearLine, stderr);
  drawn_ = false;
  if (!terminal_) fmt::print(stderr, "Progress: 100%\n");
}

}  // namespace drevintool
