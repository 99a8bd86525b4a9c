#pragma once

/// Frame numbers from and to a text such as "1-100x2,120,130-125".

#include <string>
#include <vector>

namespace drevintool {

/// Most frames that one list may name, and the farthest frame from 0.
constexpr int kMostFrames = 1000000;
constexpr int kFarthestFrame = 1000000000;

/// The frames of a list of pieces by commas, in its order, each once: N, FIRST-LAST or
/// FIRST-LASTxSTEP. Numbers may be negative ("-5--1"), ranges may descend ("10-1"), STEP is at
/// least 1 and is counted from FIRST. Throws ToolError (Usage) that names the piece for anything
/// else, for an empty list, and for more than kMostFrames frames.
std::vector<int> parseFrameList(const std::string& text);

/// The shortest such text for the frames, in ascending order and each once: runs of three frames
/// and more with the same step become ranges. Empty for no frames.
std::string frameListText(std::vector<int> frames);

}  // namespace drevintool
