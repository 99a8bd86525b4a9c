#include <gtest/gtest.h>

#include "defocus/ImagingFrame.h"
#include "support/Agreement.h"
#include "support/RandomScene.h"

namespace drevin::test {
namespace {

constexpr unsigned seeds = DREVIN_SANITIZED != 0 ? 125 : 500;
/// Least share of the values that must be well-conditioned enough to be compared.
constexpr double leastCompared = 0.97;

struct Tally {
  long long values = 0;
  long long compared = 0;
};

std::string where(unsigned seed, const LiteralScene& scene, int channel, int x, int y,
                  const LiteralValue& literal) {
  std::ostringstream text;
  text << "seed " << seed << ", output type " << scene.settings.outputType << ", channel "
       << channel << ", column " << x << ", row " << y << ", literal " << literal.value
       << ", slack " << literal.slack;
  return text.str();
}

/// Compares every row of the scene; false at the first value that disagrees.
bool compareScene(unsigned seed, Tally& tally) {
  const LiteralScene scene = randomScene(seed);
  const LiteralFrame literal(scene);
  const ImagingFrame imaging(scene);
  const LiteralBox box = literal.box();
  for (int y = box.bottom; y < box.top; ++y) {
    const LiteralRow expected = literal.row(y, box.left, box.right);
    const auto rendered = imaging.row(y, box.left, box.right);
    for (const auto& [channel, values] : expected) {
      for (std::size_t i = 0; i < values.size(); ++i) {
        ++tally.values;
        if (!isComparable(values[i])) continue;
        ++tally.compared;
        const float value = rendered.at(channel)[i];
        if (!agrees(value, values[i].value)) {
          ADD_FAILURE() << value << " at "
                        << where(seed, scene, channel, box.left + static_cast<int>(i), y,
                                 values[i]);
          return false;
        }
      }
    }
  }
  return true;
}

TEST(ScanlineDefocus, randomScenes_agreeWithTheLiteralRows) {
  Tally tally;
  for (unsigned seed = 0; seed < seeds; ++seed) {
    compareScene(seed, tally);
  }
  EXPECT_GT(static_cast<double>(tally.compared), leastCompared * static_cast<double>(tally.values));
}

TEST(ScanlineDefocus, randomScenes_haveTheLiteralSizeEstimate) {
  for (unsigned seed = 0; seed < seeds; ++seed) {
    const LiteralScene scene = randomScene(seed);
    if (scene.settings.outputType > 1) continue;
    const LiteralFrame literal(scene);
    const ImagingFrame imaging(scene);
    EXPECT_EQ(imaging.estimate().largest, literal.estimate().largest) << "seed " << seed;
    EXPECT_EQ(imaging.estimate().kernelSize, literal.estimate().kernelSize) << "seed " << seed;
    EXPECT_EQ(imaging.estimate().padding, literal.estimate().padding) << "seed " << seed;
    EXPECT_EQ(imaging.estimate().exceeded, literal.estimate().warned) << "seed " << seed;
  }
}

}  // namespace
}  // namespace drevin::test
