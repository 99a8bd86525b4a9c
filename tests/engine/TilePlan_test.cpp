#include "engine/TilePlan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "engine/CostModel.h"
#include "engine/FourierPlan.h"
#include "engine/RowScene.h"
#include "engine/Simd.h"

namespace drevin::test {
namespace {

constexpr int side = 128;
constexpr int planes = 5;
constexpr int largestRadius = 64;

const dvKernelTable& discs() {
  static const dvKernelTable table(kernelBank(KernelKind::Disc, largestRadius), 1);
  return table;
}

/// Everything that the tile reaches.
const dvWantedPart everything(0, 0, side,
                              {-largestRadius, -largestRadius, side + largestRadius,
                               side + largestRadius});

/// A tile in which radii have splats, half of each splat's share in the next radius.
class Tile {
 public:
  Tile& add(int radius, int splats, int shift = 0) {
    for (int i = 0; i < splats; ++i)
      census_.add(kernels_, {0, radius, 0.5F, 0.5F}, shift);
    return *this;
  }
  Tile& addAlone(int radius, int splats) {
    for (int i = 0; i < splats; ++i)
      census_.add(kernels_, {0, radius, 1.0F, 0.0F}, 0);
    return *this;
  }
  dvTilePlan plan(dvTileChoice choice = dvTileChoice::ByCost) const {
    return planTile(census_, kernels_, side, planes, cost_, choice, everything);
  }
  /// For a picture of `box`, the tile's first pixel at 0, 0.
  dvTilePlan planFor(const dvFrameBox& box) const {
    return planTile(census_, kernels_, side, planes, cost_, dvTileChoice::ByCost,
                    {0, 0, side, box});
  }
  dvTilePlan planBy(const dvRowCost& cost) const {
    return planTile(census_, kernels_, side, planes, cost, dvTileChoice::ByCost, everything);
  }
  /// What a plan takes, by the costs as they are.
  double timeOf(const dvTilePlan& plan) const {
    double time = plan.time;
    for (int place = 0; place < kernels_.count(); ++place) {
      if (!plan.takes(place)) time += census_.directTime(kernels_, place, side, cost_);
    }
    return time;
  }
  double directTime(int radius) const {
    return census_.directTime(kernels_, kernels_.place(radius, 0), side, cost_);
  }
  const dvCutKernels& kernels() const { return kernels_; }
  const dvRowCost& cost() const { return cost_; }

 private:
  dvCutKernels kernels_{largestRadius, largestRadius, 2};
  dvRowCost cost_{discs(), planes - 1};
  dvTileCensus census_{kernels_};
};

bool takes(const Tile& tile, int radius) {
  return tile.plan().takes(tile.kernels().place(radius, 0));
}

TEST(TilePlan, boxAroundTheReach_isWantedWhole) {
  const dvWantedPart around(0, 0, side, {-64, -64, side + 64, side + 64});
  EXPECT_EQ(around.share(64), 1.0);
  EXPECT_LT(around.share(70), 1.0);
}

TEST(TilePlan, oneRow_isWantedByItsShareOfKernels) {
  EXPECT_NEAR(dvWantedPart(0, 0, side, {-500, 64, 500, 65}).share(64), 1.0 / 129.0, 1e-9);
  // Half of the tile's rows are too far from it.
  EXPECT_NEAR(dvWantedPart(0, 0, side, {-500, 64, 500, 65}).share(31), 0.5 / 63.0, 0.03 / 63.0);
}

TEST(TilePlan, boxOutOfReach_isWantedNotAtAll) {
  EXPECT_EQ(dvWantedPart(0, 0, side, {0, 300, 100, 400}).share(64), 0.0);
  EXPECT_GT(dvWantedPart(0, 0, side, {300, 0, 400, 100}).share(64), 0.0);
}

TEST(TilePlan, fewRows_areSplattedWhereAWholePictureIsTransformed) {
  Tile tile;
  tile.addAlone(40, side * side);
  EXPECT_EQ(tile.planFor({-100, -100, 300, 300}).largest, 40);
  EXPECT_EQ(tile.planFor({-100, 60, 300, 61}).largest, -1);
}

TEST(TilePlan, emptyTile_hasNone) {
  for (const dvTileChoice choice : {dvTileChoice::ByCost, dvTileChoice::Everything}) {
    const dvTilePlan plan = Tile().plan(choice);
    EXPECT_EQ(plan.largest, -1);
    EXPECT_EQ(plan.gain, 0.0);
    EXPECT_FALSE(plan.takes(3));
  }
}

TEST(TilePlan, choiceNothing_hasNone) {
  EXPECT_EQ(Tile().addAlone(40, side * side).plan(dvTileChoice::Nothing).largest, -1);
}

TEST(TilePlan, choiceEverything_takesAllThatIsThere) {
  const Tile tile = Tile().add(3, 1).addAlone(40, 1);
  const dvTilePlan plan = tile.plan(dvTileChoice::Everything);
  EXPECT_EQ(plan.largest, 40);
  EXPECT_EQ(plan.length, transformSide(side + 80));
  for (const int radius : {3, 4, 40})
    EXPECT_TRUE(plan.takes(tile.kernels().place(radius, 0))) << radius;
  for (const int radius : {2, 5, 39, 41})
    EXPECT_FALSE(plan.takes(tile.kernels().place(radius, 0))) << radius;
}

TEST(TilePlan, tileFullOfOneLargeBlur_isTransformed) {
  for (const int radius : {16, 32, 64})
    EXPECT_TRUE(takes(Tile().addAlone(radius, side * side), radius)) << radius;
}

TEST(TilePlan, aDozenSplats_stayDirect) {
  for (const int radius : {1, 8, 32, 64})
    EXPECT_FALSE(takes(Tile().addAlone(radius, 12), radius)) << radius;
}

TEST(TilePlan, tileInFocus_staysDirect) {
  EXPECT_FALSE(takes(Tile().addAlone(0, side * side), 0));
}

TEST(TilePlan, fewSplatsOfALargerBlur_doNotLengthenTheTransform) {
  const Tile tile = Tile().addAlone(20, side * side).addAlone(64, 20);
  const dvTilePlan plan = tile.plan();
  EXPECT_EQ(plan.largest, 20);
  EXPECT_EQ(plan.length, transformSide(side + 40));
}

TEST(TilePlan, gain_isTheTimeSaved) {
  const Tile tile = Tile().addAlone(40, side * side).addAlone(20, side * side / 2);
  const dvTilePlan plan = tile.plan();
  ASSERT_EQ(plan.largest, 40);
  const double transforms =
      2.0 * fourierAddCost(side, plan.length, planes) + fourierFinishCost(plan.length, planes);
  const double saved = tile.directTime(40) + tile.directTime(20) - transforms;
  EXPECT_NEAR(plan.gain, saved, 1e-6 * saved);
}

TEST(TilePlan, kernelsOfASplat_shareItsCost) {
  const Tile tile = Tile().add(30, 128);
  const double whole = 128.0 * tile.cost().splat(30, 128.0);
  EXPECT_NEAR(tile.directTime(30), 0.5 * whole, 1e-9 * whole);
  EXPECT_NEAR(tile.directTime(31), 0.5 * whole, 1e-9 * whole);
}

TEST(TilePlan, kernelAlone_costsLessThanTwo) {
  const Tile tile = Tile().addAlone(30, 128);
  EXPECT_LT(tile.directTime(30), 128.0 * tile.cost().splat(30, 128.0));
  EXPECT_GT(tile.directTime(30), 64.0 * tile.cost().splat(30, 128.0));
}

TEST(TilePlan, cutKernels_areOthers) {
  const Tile tile = Tile().add(63, side * side / 2, 2).add(63, 3, 0);
  const dvTilePlan plan = tile.plan();
  EXPECT_TRUE(plan.takes(tile.kernels().place(63, 2)));
  EXPECT_FALSE(plan.takes(tile.kernels().place(63, 0)));
}

/// The times of adding splats, all wrong by a factor.
dvRowCost misjudged(double factor) {
  dvRowTimes times = rowTimes(simdLevel());
  for (double* time : {&times.splat, &times.run, &times.edges, &times.scattered, &times.scatterCell,
                       &times.gatherCell, &times.gatherBlock})
    *time *= factor;
  return {discs(), planes - 1, times};
}

/// A tile with splats of many radii, of some a handful, of others thousands.
Tile randomTile(std::mt19937& random) {
  std::uniform_int_distribution<int> kinds(1, 12);
  std::uniform_int_distribution<int> radius(1, largestRadius - 1);
  std::uniform_real_distribution<double> magnitude(0.0, std::log(4000.0));
  Tile tile;
  for (int left = kinds(random); left > 0; --left)
    tile.add(radius(random), static_cast<int>(std::exp(magnitude(random))));
  return tile;
}

/// Times are the model's own: how often the choice is wrong by measured times, drevin_frames tells.
TEST(TilePlan, modelWrongByAFactor_choosesAPlanThatIsWorseByLessThanTheFactor) {
  std::mt19937 random(20);
  for (const double factor : {1.0 / 1.5, 0.8, 1.25, 1.5}) {
    const dvRowCost wrong = misjudged(factor);
    double right = 0.0;
    double taken = 0.0;
    int otherwise = 0;
    for (int i = 0; i < 300; ++i) {
      const Tile tile = randomTile(random);
      const dvTilePlan plan = tile.planBy(wrong);
      const double best = tile.timeOf(tile.plan());
      EXPECT_LE(tile.timeOf(plan), 1.5 * best) << factor;
      otherwise += plan.transformed != tile.plan().transformed ? 1 : 0;
      right += best;
      taken += tile.timeOf(plan);
    }
    EXPECT_GT(otherwise, 30) << factor;
    // Of the whole: most tiles are far from where the choice turns.
    EXPECT_LT(taken, 1.1 * right) << factor;
  }
}

TEST(TilePlan, byCost_isTheLeastExpectedTimeOfAllChoices) {
  std::mt19937 random(21);
  for (int i = 0; i < 300; ++i) {
    const Tile tile = randomTile(random);
    const double best = tile.timeOf(tile.plan());
    EXPECT_LE(best, (1.0 + 1e-9) * tile.timeOf(tile.plan(dvTileChoice::Nothing)));
    EXPECT_LE(best, (1.0 + 1e-9) * tile.timeOf(tile.plan(dvTileChoice::Everything)));
  }
}

}  // namespace
}  // namespace drevin::test
