#include "frames/SinglePicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "DDImage/Thread.h"
#include "frames/FrameNode.h"
#include "frames/Measure.h"
#include "frames/Yardstick.h"
#include "support/Agreement.h"

namespace drevin::bench {

namespace {

/// Worst difference in parts of the bound.
double differenceOf(const std::vector<float>& made, const std::vector<float>& expected) {
  double worst = 0.0;
  for (std::size_t i = 0; i < made.size(); ++i) {
    const auto a = static_cast<double>(made[i]);
    const auto b = static_cast<double>(expected[i]);
    worst = std::max(worst, std::fabs(a - b) / test::allowedDifference(b));
  }
  return worst;
}

}  // namespace

void printSinglePicture(const FrameCase& picture) {
  const FramePictures pictures = framePictures(picture);
  FrameNode node(picture, pictures);
  embedded::RenderResult result;
  const double frameTime = secondsOf([&] { result = node.render(); });
  for (const auto& stage : result.stages)
    fmt::print("  {} {:.3f}", stage.name, stage.seconds);
  PlainNodeRows rows(node);
  const std::vector<int> sampled = spreadRows(picture.size.height, 3);
  double seconds = 0.0;
  double worst = 0.0;
  for (const int y : sampled) {
    std::vector<float> row;
    seconds += secondsOf([&] { row = rows.row(y); });
    worst = std::max(worst, differenceOf(pictureRow(result.image, y), row));
  }
  const unsigned threads = DD::Image::Thread::numCPUs;
  const double whole =
      wholeFrameSeconds(seconds, static_cast<int>(sampled.size()), picture.size.height, threads);
  fmt::print(
      "\n{} {} px {}x{}: {:.3f} s; row by row, optimised, {:.1f} s (scaled to {} threads), ratio "
      "{:.1f}, worst {:.3f} of the bound\n",
      picture.scene, picture.settings.multiplier, picture.size.width, picture.size.height,
      frameTime, whole, threads, whole / frameTime, worst);
}

}  // namespace drevin::bench
