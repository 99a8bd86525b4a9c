#pragma once

/// What the displays of progress are made of.

#include <string>

#include "EmbeddedHost/Render.h"

namespace drevintool {

/// Takes back the line of a terminal that was drawn last.
constexpr const char* kClearLine = "\r\033[K";

/// From 0 to 1: of the rows, or of a stage that tells it.
double shareOf(const embedded::Progress& progress);

/// "12 s", "3:07 min" or "1:04 h".
std::string durationText(double seconds);

/// " [=====     ] 42%, 12 s left" with `count` in the place of the percentage; `share` is from 0 to
/// 1, and the time is left out where it is below 0.
std::string barText(double share, const std::string& count, double secondsLeft);

}  // namespace drevintool
