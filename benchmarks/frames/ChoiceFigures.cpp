#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

#include "engine/EngineFrame.h"
#include "frames/Figures.h"
#include "frames/Measure.h"
#include "frames/Yardstick.h"
#include "support/Agreement.h"

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

/// The largest difference in parts of the bound.
double differenceOf(const dvFramePlanes& a, const dvFramePlanes& b) {
  const dvFrameBox& box = a.front().box();
  double worst = 0.0;
  for (std::size_t c = 0; c < a.size(); ++c) {
    for (int y = box.bottom; y < box.top; ++y) {
      for (int x = 0; x < box.width(); ++x) {
        worst = std::max(
            worst, test::differenceInParts(a[c].row(y)[x], static_cast<double>(b[c].row(y)[x])));
      }
    }
  }
  return worst;
}

/// Processor seconds of all parts by choice, and the worst of a part.
struct ChoiceTimes {
  std::array<double, choices.size()> seconds{};
  double worstRatio = 0.0;  ///< of the chosen way's time to the quickest's
  double error = 0.0;       ///< between the ways, in parts of the bound
};

void addPart(const test::EngineFrame& frame, const dvFrameBox& box, int rounds,
             ChoiceTimes& times) {
  const test::EngineLines lines = frame.lines(box);
  std::vector<std::unique_ptr<ChosenPart>> parts;
  for (const dvTileChoice choice : choices)
    parts.push_back(std::make_unique<ChosenPart>(frame, lines, choice));
  for (int round = 0; round < rounds; ++round) {
    for (const auto& part : parts)
      part->time();
  }
  double quickest = parts.front()->seconds();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    times.seconds[i] += parts[i]->seconds();
    quickest = std::min(quickest, parts[i]->seconds());
    times.error = std::max(times.error, differenceOf(parts[i]->planes(), parts.front()->planes()));
  }
  times.worstRatio = std::max(times.worstRatio, parts.front()->seconds() / quickest);
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
      addPart(frame, {x, y, x + side, y + side}, plan.rounds, times);
    }
  }
  TableLine line;
  line.figure = fmt::format("choice of transforms, {}, {} px, worst of {} parts", scene, blur,
                            partsAlong * partsAcross);
  line.ours = fmt::format("{} (nothing {}, everything {})", secondsText(times.seconds[0]),
                          secondsText(times.seconds[1]), secondsText(times.seconds[2]));
  line.value = timesText(times.worstRatio);
  line.reach = "≤ 1.5×";
  line.error = times.error;
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
