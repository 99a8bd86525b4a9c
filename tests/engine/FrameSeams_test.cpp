/// Borders between tiles must not show: neither where they fall nor what a tile does may.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "engine/FrameScenes.h"
#include "engine/LiteralComparison.h"
#include "support/Agreement.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

constexpr dvTileChoice allChoices[] = {dvTileChoice::Nothing, dvTileChoice::Everything,
                                       dvTileChoice::ByCost};
constexpr int width = 300;
constexpr int height = 220;

/// The largest difference of two frames where their boxes overlap, in parts of what is allowed.
double largestDifference(const dvFramePlanes& a, const dvFramePlanes& b) {
  const dvFrameBox& first = a.front().box();
  const dvFrameBox& second = b.front().box();
  double worst = 0.0;
  for (std::size_t c = 0; c < a.size(); ++c) {
    for (int y = std::max(first.bottom, second.bottom); y < std::min(first.top, second.top); ++y) {
      for (int x = std::max(first.left, second.left); x < std::min(first.right, second.right);
           ++x) {
        const float one = a[c].row(y)[x - first.left];
        const float two = b[c].row(y)[x - second.left];
        worst = std::max(worst, differenceInParts(one, static_cast<double>(two)));
      }
    }
  }
  return worst;
}

std::vector<LiteralScene> unshiftedScenes() {
  LiteralScene front = stagedScene(30.0F, 3, width, height);
  front.settings.focusOutput = 1;
  return {farScene(56.0F, width, height), rampScene(30.0F, 2, width, height),
          stagedScene(40.0F, 4, width, height), front};
}

/// The largest difference of frames of boxes that begin elsewhere, and with them the tiles, which
/// begin a padding before the box.
double largestDifferenceOfBorders(const LiteralScene& scene, dvTileChoice choice) {
  const int shifts[][2] = {{1, 0}, {0, 1}, {16, 5}, {37, 64}};
  const EngineFrame frame(scene);
  const dvFramePlanes whole = frame.make(frame.lines({0, 0, width, height}), choice);
  double worst = 0.0;
  for (const auto& shift : shifts) {
    const EngineLines lines = frame.lines({shift[0], shift[1], width, height});
    worst = std::max(worst, largestDifference(frame.make(lines, choice), whole));
  }
  return worst;
}

TEST(FrameSeams, bordersOfTilesAnywhere_giveTheSamePicture) {
  // Two frames of which each may be off, in either direction: what is transformed in one need not
  // be in the other.
  for (const LiteralScene& scene : unshiftedScenes())
    EXPECT_LT(largestDifferenceOfBorders(scene, dvTileChoice::ByCost), 2.0 * engineShare);
}

TEST(FrameSeams, bordersWhereEverythingIsTransformed_giveTheSamePicture) {
  for (const LiteralScene& scene : unshiftedScenes())
    EXPECT_LT(largestDifferenceOfBorders(scene, dvTileChoice::Everything), 2.0 * engineShare);
}

/// The scene's picture moved right and up by some pixels, in a format that much larger.
LiteralScene moved(const LiteralScene& scene, int right, int up) {
  LiteralScene result = plainScene(width + right, height + up, 1000.0F);
  result.settings = scene.settings;
  for (auto& [channel, plane] : result.image.planes) {
    for (int y = 0; y < height + up; ++y) {
      for (int x = 0; x < width + right; ++x) {
        pixelAt(result.image, channel, x, y) =
            scene.image.at(std::max(0, x - right), std::max(0, y - up), channel);
      }
    }
  }
  return result;
}

TEST(FrameSeams, pictureMovedAcrossTheTiles_isTheSameMoved) {
  const LiteralScene scene = stagedScene(40.0F, 4, width, height);
  const EngineFrame frame(scene);
  const int shifts[][2] = {{1, 1}, {23, 50}, {64, 0}};
  for (const dvTileChoice choice : allChoices) {
    const dvFramePlanes whole = frame.make(frame.lines({0, 0, width, height}), choice);
    for (const auto& shift : shifts) {
      const LiteralScene other = moved(scene, shift[0], shift[1]);
      const EngineFrame otherFrame(other);
      const dvFramePlanes planes = otherFrame.make(otherFrame.lines(formatBox(other)), choice);
      double worst = 0.0;
      for (std::size_t c = 0; c < planes.size(); ++c) {
        for (int y = 0; y < height; ++y) {
          for (int x = 0; x < width; ++x) {
            const float value = planes[c].row(y + shift[1])[x + shift[0]];
            worst =
                std::max(worst, differenceInParts(value, static_cast<double>(whole[c].row(y)[x])));
          }
        }
      }
      EXPECT_LT(worst, engineShare) << "by " << shift[0] << ", " << shift[1];
    }
  }
}

TEST(FrameSeams, whateverIsTransformed_givesTheSamePicture) {
  std::vector<LiteralScene> scenes = unshiftedScenes();
  addMattesAndShift(scenes.emplace_back(stagedScene(24.0F, 2, width, height)));
  for (const LiteralScene& scene : scenes) {
    const EngineFrame frame(scene);
    const EngineLines lines = frame.lines(formatBox(scene));
    const dvFramePlanes direct = frame.make(lines, dvTileChoice::Nothing);
    for (const dvTileChoice choice : {dvTileChoice::Everything, dvTileChoice::ByCost})
      EXPECT_LT(largestDifference(frame.make(lines, choice), direct), engineShare);
  }
}

/// The largest step between neighbouring columns or rows of one plane of a frame.
double largestStep(const dvFramePlane<float>& plane) {
  double step = 0.0;
  for (int y = 1; y < height; ++y) {
    for (int x = 1; x < width; ++x) {
      const auto value = static_cast<double>(plane.row(y)[x]);
      step = std::max(step, std::abs(value - static_cast<double>(plane.row(y)[x - 1])));
      step = std::max(step, std::abs(value - static_cast<double>(plane.row(y - 1)[x])));
    }
  }
  return step;
}

TEST(FrameSeams, evenPicture_hasNoStepAnywhere) {
  LiteralScene scene = farScene(50.0F, width, height);
  for (int channel = 1; channel <= 3; ++channel)
    scene.image.planes[channel] = constantPlane(scene.image.box, 0.7F);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    const dvFramePlanes planes = frame.make(lines, choice);
    EXPECT_LT(differenceInParts(planes[0].row(100)[100], 0.7), engineShare);
    for (const dvFramePlane<float>& plane : planes)
      EXPECT_LT(largestStep(plane), engineShare * allowedDifference(0.7));
  }
}

}  // namespace
}  // namespace drevin::test
