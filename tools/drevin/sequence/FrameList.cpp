#include "sequence/FrameList.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>

#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

struct FrameRange {
  int first = 0;
  int last = 0;
  int step = 1;

  int count() const { return std::abs(last - first) / step + 1; }
  int at(int index) const { return last < first ? first - index * step : first + index * step; }
};

[[noreturn]] void fail(const std::string& piece, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--frames: '" + piece + "' " + reason));
}

int parseFrame(const std::string& text, const std::string& piece) {
  const std::optional<int> frame = parseInteger(text);
  if (!frame) fail(piece, "is no frame; give N, FIRST-LAST or FIRST-LASTxSTEP");
  if (std::abs(static_cast<std::int64_t>(*frame)) > kFarthestFrame) {
    fail(piece, "is too far away; frames lie between -1000000000 and 1000000000");
  }
  return *frame;
}

int parseStep(const std::string& text, const std::string& piece) {
  const std::optional<int> step = parseInteger(text);
  if (!step || *step < 1) fail(piece, "has no step that is a whole number above 0");
  return *step;
}

FrameRange parsePiece(const std::string& piece) {
  const std::size_t cross = piece.find('x');
  const std::string range = piece.substr(0, cross);
  const std::size_t dash = range.empty() ? std::string::npos : range.find('-', 1);
  FrameRange frames;
  frames.first = parseFrame(range.substr(0, dash), piece);
  frames.last =
      dash == std::string::npos ? frames.first : parseFrame(range.substr(dash + 1), piece);
  if (cross == std::string::npos) return frames;
  if (dash == std::string::npos) fail(piece, "has a step but no range; give FIRST-LASTxSTEP");
  frames.step = parseStep(piece.substr(cross + 1), piece);
  return frames;
}

// How many of the ascending frames from `at` on have one step.
std::size_t runFrom(const std::vector<int>& frames, std::size_t at) {
  std::size_t end = at + 1;
  while (end < frames.size() && frames[end] - frames[end - 1] == frames[at + 1] - frames[at])
    ++end;
  return end - at;
}

}  // namespace

std::vector<int> parseFrameList(const std::string& text) {
  std::vector<int> frames;
  std::set<int> seen;
  std::int64_t named = 0;
  for (const std::string& piece : splitList(text)) {
    if (piece.empty()) fail(text, "has an empty piece; give frames by commas, such as 1-100,120");
    const FrameRange range = parsePiece(piece);
    named += range.count();
    if (named > kMostFrames) fail(piece, "makes more than 1000000 frames");
    for (int index = 0; index < range.count(); ++index) {
      if (seen.insert(range.at(index)).second) frames.push_back(range.at(index));
    }
  }
  if (frames.empty()) fail(text, "names no frame; give frames such as 1-100,120");
  return frames;
}

std::string frameListText(std::vector<int> frames) {
  std::sort(frames.begin(), frames.end());
  frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
  std::string text;
  for (std::size_t at = 0; at < frames.size();) {
    const std::size_t run = runFrom(frames, at);
    const std::size_t taken = run < 3 ? 1 : run;
    text += (text.empty() ? "" : ",") + std::to_string(frames[at]);
    if (taken > 1) {
      const int step = frames[at + 1] - frames[at];
      text += "-" + std::to_string(frames[at + taken - 1]);
      if (step > 1) text += "x" + std::to_string(step);
    }
    at += taken;
  }
  return text;
}

}  // namespace drevintool
