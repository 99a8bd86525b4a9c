#include "terminal/ProgressBar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace drevintool {

double shareOf(const embedded::Progress& progress) {
  if (progress.rowsTotal <= 0) return progress.fraction;
  return static_cast<double>(progress.rowsDone) / progress.rowsTotal;
}

std::string durationText(double seconds) {
  const long whole = std::lround(std::min(seconds, 1e6));
  if (whole < 60) return fmt::format("{} s", whole);
  if (whole < 3600) return fmt::format("{}:{:02} min", whole / 60, whole % 60);
  return fmt::format("{}:{:02} h", whole / 3600, whole / 60 % 60);
}

std::string barText(double share, const std::string& count, double secondsLeft) {
  constexpr int kWidth = 30;
  const auto full = static_cast<std::size_t>(kWidth * std::clamp(share, 0.0, 1.0));
  std::string text = fmt::format(" [{:<{}}] {}", std::string(full, '='), kWidth, count);
  if (secondsLeft >= 0.0) text += ", " + durationText(secondsLeft) + " left";
  return text;
}

}  // namespace drevintool
