#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <sstream>

#include "node/NodeBench.h"
#include "support/Agreement.h"
#include "support/RandomScene.h"

namespace drevin::test {
namespace {

constexpr unsigned seeds = DREVIN_SANITIZED != 0 ? 80 : 400;
/// Least share of the values that must be well-conditioned enough to be compared.
constexpr double leastCompared = 0.97;

struct Tally {
  long long values = 0;
  long long compared = 0;
};

float renderedAt(const embedded::Image& image, int channel, int x, int y) {
  const auto plane = image.planes.find(hostChannel(channel));
  if (plane == image.planes.end()) return 0.0F;
  const int at = (y - image.box.y()) * image.box.w() + (x - image.box.x());
  return (*plane->second)[static_cast<std::size_t>(at)];
}

/// Compares one row; the description of the first value that disagrees, else "".
std::string compareRow(const LiteralFrame& literal, const embedded::Image& image, int y,
                       Tally& tally) {
  const LiteralBox box = literal.box();
  for (const auto& [channel, values] : literal.row(y, box.left, box.right)) {
    for (int x = box.left; x < box.right; ++x) {
      const LiteralValue& expected = values[static_cast<std::size_t>(x - box.left)];
      ++tally.values;
      if (!isComparable(expected)) continue;
      ++tally.compared;
      const float value = renderedAt(image, channel, x, y);
      if (!agrees(value, expected.value)) {
        std::ostringstream text;
        text << value << " at channel " << channel << ", column " << x << ", row " << y
             << ", literally " << expected.value << ", slack " << expected.slack;
        return text.str();
      }
    }
  }
  return "";
}

/// Renders the node and compares every row with the scene's; stops at the first disagreement.
void compareNode(unsigned seed, NodeBench& bench, const LiteralScene& scene, Tally& tally) {
  bench.options.threads = seed % 3 + 1;
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done) << "seed " << seed;
  const LiteralFrame literal(scene);
  const LiteralBox box = literal.box();
  ASSERT_EQ(result.image.box, DD::Image::Box(box.left, box.bottom, box.right, box.top))
      << "seed " << seed;
  std::string difference;
  for (int y = box.bottom; y < box.top && difference.empty(); ++y) {
    difference = compareRow(literal, result.image, y, tally);
  }
  EXPECT_EQ(difference, "") << "seed " << seed << ", output type " << scene.settings.outputType;
  if (scene.settings.outputType <= 1) {
    EXPECT_EQ(bench.drevin().kernelSize(), literal.estimate().kernelSize) << "seed " << seed;
    EXPECT_EQ(bench.drevin().padding(), literal.estimate().padding) << "seed " << seed;
    EXPECT_EQ(result.messages.size(), literal.estimate().warned ? 1U : 0U) << "seed " << seed;
  }
}

void compareScene(unsigned seed, const LiteralScene& scene, Tally& tally) {
  NodeBench bench(scene);
  compareNode(seed, bench, scene, tally);
}

TEST(RenderedNode, randomScenes_agreeWithTheLiteralFrame) {
  Tally tally;
  for (unsigned seed = 0; seed < seeds; ++seed) {
    compareScene(seed, randomScene(seed), tally);
  }
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
}

TEST(RenderedNode, randomScenesOfEveryOutputType_agreeWithTheLiteralFrame) {
  Tally tally;
  for (unsigned seed = 0; seed < 40; ++seed) {
    LiteralScene scene = randomScene(10000 + seed);
    for (int type = 0; type <= 4; ++type) {
      scene.settings.outputType = type;
      compareScene(10000 + seed, scene, tally);
    }
  }
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
}

/// The value of a camera that a test makes odd.
float& cameraValue(LiteralSettings& settings, int index) {
  float* const values[] = {&settings.focalPlane, &settings.fStop, &settings.focalLength,
                           &settings.apertureWidth, &settings.apertureHeight};
  return *values[index];
}

TEST(RenderedNode, camerasOfAnyValue_agreeWithTheLiteralFrame) {
  const float odd[] = {0.0F, -5.0F, 1e30F, std::nanf(""), std::numeric_limits<float>::infinity()};
  Tally tally;
  for (unsigned seed = 0; seed < 75; ++seed) {
    LiteralScene scene = randomScene(20000 + seed);
    NodeBench bench(scene);
    LiteralSettings& s = scene.settings;
    s.focalPlane = 30.0F;
    s.focalLength = 85.0F;
    if (seed >= 25) cameraValue(s, static_cast<int>(seed % 5)) = odd[seed / 5 % 5];
    embedded::CameraValues camera;
    camera.focalPlane = static_cast<double>(s.focalPlane);
    camera.fStop = static_cast<double>(s.fStop);
    camera.focalLength = static_cast<double>(s.focalLength);
    camera.horizontalAperture = static_cast<double>(s.apertureWidth);
    camera.verticalAperture = static_cast<double>(s.apertureHeight);
    bench.connectCamera(camera);
    compareNode(seed, bench, scene, tally);
  }
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
}

}  // namespace
}  // namespace drevin::test
