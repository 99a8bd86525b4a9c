#include "engine/NonZeroReach.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "engine/RowScene.h"
#include "engine/ThreadParallel.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr int left = -20;
constexpr int right = 80;
constexpr int rows = 40;
constexpr int largest = 9;

/// Lines of splats with one value each, in one slice, from row 0 on.
class Scene {
 public:
  explicit Scene(KernelKind kind = KernelKind::Disc) : kernels_(kernelBank(kind, largest), 1) {
    for (int y = 0; y < rows; ++y) {
      lines_[static_cast<std::size_t>(y)].sourceY = y;
      lines_[static_cast<std::size_t>(y)].groups.resize(1);
      lines_[static_cast<std::size_t>(y)].groups[0].resize(1);
      splats(y).centreY = y;
    }
  }
  dvCentredSplats& splats(int y) { return lines_[static_cast<std::size_t>(y)].groups[0][0]; }
  void add(int y, const dvSplatRecord& record, float value) {
    splats(y).row.records.push_back(record);
    splats(y).row.values.push_back(value);
  }
  /// By plane: the value's, then the weight's.
  std::vector<std::uint8_t> reached(std::size_t plane, int y) {
    dvSplatLines places;
    for (dvSplatLine& line : lines_) {
      dvSplatRow& row = line.groups[0][0].row;
      row.sliceBegin = {0, static_cast<std::uint32_t>(row.records.size())};
      places.push_back(&line);
    }
    ThreadParallel parallel(2);
    const dvGroupRows group(places, 0, 0, largest, parallel);
    return dvNonZeroReach(group, kernels_, 1, parallel).row(plane, y, left, right);
  }
  /// Whether a splat with a value that is not zero has a kernel value that is not.
  bool isReached(int x, int y) {
    for (int from = 0; from < rows; ++from) {
      const dvSplatRow& row = splats(from).row;
      for (std::size_t r = 0; r < row.records.size(); ++r) {
        const dvSplatRecord& record = row.records[r];
        if (row.values[r] == 0.0F) continue;
        if (record.near > 0.0F && valueAt(record.radius, x - record.x, y - from) != 0.0F)
          return true;
        if (record.far > 0.0F && valueAt(record.radius + 1, x - record.x, y - from) != 0.0F)
          return true;
      }
    }
    return false;
  }

 private:
  float valueAt(int radius, int dx, int dy) const {
    if (std::abs(dx) > radius || std::abs(dy) > radius) return 0.0F;
    return kernels_.row(radius, radius - dy)[radius + dx];
  }

  std::vector<dvSplatLine> lines_ = std::vector<dvSplatLine>(rows);
  dvKernelTable kernels_;
};

int countOf(const std::vector<std::uint8_t>& reached) {
  return static_cast<int>(std::count(reached.begin(), reached.end(), 1));
}

TEST(NonZeroReach, nothing_reachesNothing) {
  Scene scene;
  EXPECT_EQ(countOf(scene.reached(0, 20)), 0);
  EXPECT_EQ(countOf(scene.reached(1, 20)), 0);
}

TEST(NonZeroReach, valueOfZero_reachesWithItsWeightAlone) {
  Scene scene;
  scene.add(20, {30, 4, 1.0F, 0.0F}, 0.0F);
  EXPECT_EQ(countOf(scene.reached(0, 20)), 0);
  EXPECT_EQ(countOf(scene.reached(1, 20)), 9);
  EXPECT_EQ(scene.reached(1, 20)[30 - left], 1);
  EXPECT_EQ(countOf(scene.reached(1, 25)), 0);
}

TEST(NonZeroReach, discs_areReachedAsFarAsTheyAreNotZero) {
  Scene scene;
  Draw draw(4);
  for (int i = 0; i < 12; ++i) {
    const int radius = draw.whole(0, largest - 1);
    scene.add(draw.whole(0, rows - 1),
              {draw.whole(-30, 90), radius, 0.5F, i % 2 == 0 ? 0.0F : 0.5F},
              i % 3 == 0 ? 0.0F : -0.25F);
  }
  for (int y = 0; y < rows; ++y) {
    const std::vector<std::uint8_t> reached = scene.reached(0, y);
    for (int x = left; x < right; ++x)
      ASSERT_EQ(reached[static_cast<std::size_t>(x - left)] != 0, scene.isReached(x, y))
          << x << ", " << y;
  }
}

TEST(NonZeroReach, neighboursOfOneRadius_areOneStretch) {
  Scene scene;
  for (int x = 10; x < 50; ++x)
    scene.add(20, {x, 3, 1.0F, 0.0F}, 1.0F);
  const std::vector<std::uint8_t> reached = scene.reached(0, 20);
  EXPECT_EQ(countOf(reached), 40 + 2 * 3);
  EXPECT_EQ(reached[7 - left], 1);
  EXPECT_EQ(reached[6 - left], 0);
}

// More stretches than are told apart: all that is reached is, and little else.
TEST(NonZeroReach, manyStretches_missNothing) {
  Scene scene(KernelKind::Random);
  Draw draw(6);
  for (int y = 12; y < 28; ++y) {
    for (int x = -10; x < 70; ++x) {
      if (x < 40 && x > 10) continue;
      scene.add(y, {x, draw.whole(0, largest - 1), 0.5F, 0.5F}, draw.chance(0.9) ? 1.0F : 0.0F);
    }
  }
  int more = 0;
  for (int y = 0; y < rows; ++y) {
    const std::vector<std::uint8_t> reached = scene.reached(0, y);
    for (int x = left; x < right; ++x) {
      const bool is = reached[static_cast<std::size_t>(x - left)] != 0;
      if (scene.isReached(x, y)) {
        ASSERT_TRUE(is) << x << ", " << y;
      } else {
        more += is ? 1 : 0;
      }
    }
    EXPECT_EQ(reached[25 - left], 0) << y;
  }
  EXPECT_LT(more, rows * (right - left) / 10);
}

TEST(NonZeroReach, specialAndNotFiniteSplats_reachTheirSquare) {
  Scene scene;
  dvSpecialSplat splat;
  splat.x = 30;
  splat.radius[1] = 5;
  splat.values = {1.0F};
  scene.splats(20).specials.push_back(splat);
  scene.splats(20).notFinite.push_back(
      {0, 60, 4, {3, -1}, {std::numeric_limits<float>::infinity()}});
  const std::vector<std::uint8_t> reached = scene.reached(0, 23);
  EXPECT_EQ(countOf(reached), 11 + 4 + 2 * 3);
  EXPECT_EQ(countOf(scene.reached(0, 24)), 11);
}

// A chromatic shift may put a centre anywhere.
TEST(NonZeroReach, farAway_reachesNothing) {
  Scene scene;
  scene.add(20, {std::numeric_limits<std::int32_t>::max(), 4, 1.0F, 0.0F}, 1.0F);
  scene.add(21, {std::numeric_limits<std::int32_t>::min(), 4, 1.0F, 0.0F}, 1.0F);
  EXPECT_EQ(countOf(scene.reached(0, 20)), 0);
}

}  // namespace
}  // namespace drevin::test
