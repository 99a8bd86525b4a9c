#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

#include "engine/EngineFrame.h"
#include "frames/Figures.h"
#include "frames/Measure.h"
#include "frames/Yardstick.h"

namespace drevin::bench {

namespace {

/// As the cost model chooses, and either way for all.
constexpr std::array<dvTileChoice, 3> choices{dvTileChoice::ByCost, dvTileChoice::Nothing,
                                              dvTileChoice::Everything};
/// Parts of the picture along and across: small ones, because a choice that is right on the whole
/// may be wrong in many places.
constexpr int partsAlong = 4;
constexpr int partsAcross = 3;
/// px, of the frame's pixels at most a third.
constexpr int partSide = 192;

/// A part of a picture under one choice; what can be kept from one time to the next is kept, as it
/// is from tile to tile of a whole picture.
class ChosenPart {
 public:
  ChosenPart(const test::EngineFrame& frame, const test::EngineLines& lines, dvTileChoice choice)
      : frame_(frame), lines_(lines), maker_(frame.settings(), frame.padding(), serial_, choice) {}

  void time() {
    planes_.assign(frame_.channels().size(), dvFramePlane<float>(lines_.box));
    times_.push_back(threadSecondsOf(
        [this] { maker_.make(lines_.box, lines_.places, planes_, [](double /*done*/) {}); }));
  }
  double seconds() const { return median(times_); }
  const dvFramePlanes& planes() const { return planes_; }

 private:
  const test::EngineFrame& frame_;
  const test::EngineLines& lines_;
  dvSerial serial_;
  dvFrameMaker maker_;
  dvFramePlanes planes_;
  std::vector<double> times_;
};

/// Row y, one channel after the other.
std::vector<float> rowOf(const dvFramePlanes& planes, int y) {
  std::vector<float> values;
  for (const dvFramePlane<float>& plane : planes)
    values.insert(values.end(), plane.row(y), plane.row(y) + plane.box().width());
  return values;
}

/// Processor seconds of all parts by choice, and the worst of a part. Errors are in parts of the
/// bound.
struct ChoiceTimes {
  std::array<double, choices.size()> seconds{};
  std::array<double, choices.size()> errors{};
  double worstRatio = 0.0;  ///< of the chosen way's time to the quickest's
};

using ChosenParts = std::vector<std::unique_ptr<ChosenPart>>;

// From the literal frame, not from one another: where a light far brighter than the picture is all
// but hidden, any two ways may differ, and only the literal frame tells where that is.
void addErrors(const Yardstick& yardstick, const ChosenParts& parts, int rows, ChoiceTimes& times) {
  const dvFrameBox& box = parts.front()->planes().front().box();
  for (const int row : spreadRows(box.height(), rows)) {
    const int y = box.bottom + row;
    const test::LiteralRow expected = yardstick.frame().row(y, box.left, box.right);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      times.errors[i] = std::max(times.errors[i], rowError(rowOf(parts[i]->planes(), y), expected));
    }
  }
}

void addTimes(const ChosenParts& parts, ChoiceTimes& times) {
  double quickest = parts.front()->seconds();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    times.seconds[i] += parts[i]->seconds();
    quickest = std::min(quickest, parts[i]->seconds());
  }
  times.worstRatio = std::max(times.worstRatio, parts.front()->seconds() / quickest);
}

void addPart(const Yardstick& yardstick, const test::EngineFrame& frame, const dvFrameBox& box,
             const TablePlan& plan, ChoiceTimes& times) {
  const test::EngineLines lines = frame.lines(box);
  ChosenParts parts;
  for (const dvTileChoice choice : choices)
    parts.push_back(std::make_unique<ChosenPart>(frame, lines, choice));
  for (int round = 0; round < plan.rounds; ++round) {
    for (const auto& part : parts)
      part->time();
  }
  addTimes(parts, times);
  addErrors(yardstick, parts, plan.rowsChecked, times);
}

TableLine choiceLine(const std::string& scene, int blur, const TablePlan& plan) {
  const FrameCase picture = frameCase(scene, blur, plan.frame);
  const Yardstick yardstick(picture, framePictures(picture));
  const test::EngineFrame frame(yardstick.scene());
  const int side = std::min(partSide, plan.frame.height / partsAcross);
  ChoiceTimes times;
  for (int row = 0; row < partsAcross; ++row) {
    for (int column = 0; column < partsAlong; ++column) {
      const int x = (2 * column + 1) * plan.frame.width / (2 * partsAlong) - side / 2;
      const int y = (2 * row + 1) * plan.frame.height / (2 * partsAcross) - side / 2;
      addPart(yardstick, frame, {x, y, x + side, y + side}, plan, times);
    }
  }
  TableLine line;
  line.figure = fmt::format("choice of transforms, {}, {} px, worst of {} parts", scene, blur,
                            partsAlong * partsAcross);
  line.ours = fmt::format("{} (nothing {}, everything {})", secondsText(times.seconds[0]),
                          secondsText(times.seconds[1]), secondsText(times.seconds[2]));
  line.value = timesText(times.worstRatio);
  line.reach = "≤ 1.5×";
  line.error = times.errors[0];
  line.otherError = std::max(times.errors[1], times.errors[2]);
  return line;
}

}  // namespace

std::vector<Figure> choiceFigures(const TablePlan& plan) {
  std::vector<Figure> figures;
  for (const char* scene : {"scene", "ramp"}) {
    for (const int blur : {plan.middleBlur, plan.largeBlur}) {
      figures.push_back({fmt::format("choice, {}, {} px", scene, blur),
                         [scene, blur, plan] { return choiceLine(scene, blur, plan); }});
    }
  }
  return figures;
}

}  // namespace drevin::bench
