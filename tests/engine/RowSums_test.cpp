#include "engine/RowSums.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/RowScene.h"
#include "engine/SimdLevels.h"

namespace drevin::test {
namespace {

/// Of the sum of the magnitudes: what the sums of a few hundred splats may be off by.
constexpr double sumTolerance = 2e-6;

const RowWay quickest{};
const RowWay dense{dvRowShape::Dense, dvRowOrder::Scatter};
const RowWay quickestReady{dvRowShape::Quickest, dvRowOrder::Quickest, true, true};
const RowWay denseReady{dvRowShape::Dense, dvRowOrder::Scatter, true, true};
const RowWay allWays[] = {quickest,
                          {dvRowShape::Quickest, dvRowOrder::Quickest, false},
                          dense,
                          {dvRowShape::Dense, dvRowOrder::Gather},
                          {dvRowShape::Rims, dvRowOrder::Scatter, false},
                          {dvRowShape::Rims, dvRowOrder::Gather},
                          quickestReady,
                          denseReady,
                          {dvRowShape::Rims, dvRowOrder::Gather, true, true}};
constexpr KernelKind allKinds[] = {KernelKind::Disc, KernelKind::Random, KernelKind::Constant,
                                   KernelKind::BlankEdges, KernelKind::SeveralSteps};

/// Compares at every instruction set and in every way.
void expectLiteralSums(const RowScene& scene, double tolerance = sumTolerance) {
  const LiteralSums literal = literalSums(scene);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const RowWay& way : allWays) {
      EXPECT_LE(worstError(rowSums(scene, way), literal), tolerance)
          << simdLevelName(level) << ", shape " << static_cast<int>(way.shape) << ", order "
          << static_cast<int>(way.order) << (way.ready ? ", ready" : "");
    }
  }
}

/// One splat at `x` with values 1, 2, ... on the row `dy` rows above it.
RowScene oneSplat(const dvKernelBank& bank, const dvSplatRecord& record, int dy) {
  RowScene scene{bank, 2, -40, 45, {}};
  SceneRow row;
  row.dy = dy;
  row.splats.records = {record};
  row.splats.values = {1.0F, 2.0F};
  scene.rows = {row};
  return scene;
}

bool allZero(const std::vector<std::vector<double>>& planes) {
  for (const std::vector<double>& plane : planes) {
    for (const double sum : plane) {
      if (sum != 0.0) return false;
    }
  }
  return true;
}

class RowSumsOfKind : public testing::TestWithParam<KernelKind> {};

TEST_P(RowSumsOfKind, smallKernels_areTheLiteralSums) {
  for (int channels = 1; channels <= 6; ++channels) {
    SceneRange range;
    range.channels = channels;
    expectLiteralSums(randomScene(GetParam(), range, static_cast<unsigned>(channels)));
  }
}

TEST_P(RowSumsOfKind, largeKernels_areTheLiteralSums) {
  SceneRange range;
  range.largestRadius = 60;
  range.farthest = 61;
  range.right = 200;
  range.records = 10;
  expectLiteralSums(randomScene(GetParam(), range, 5));
}

TEST_P(RowSumsOfKind, kernelsWiderThanTheRow_areTheLiteralSums) {
  SceneRange range;
  range.largestRadius = 50;
  range.farthest = 3;
  for (const int width : {1, 15, 16, 17, 33}) {
    range.right = range.left + width;
    expectLiteralSums(randomScene(GetParam(), range, static_cast<unsigned>(width)));
  }
}

TEST_P(RowSumsOfKind, lightsBesideShadows_areTheLiteralSums) {
  SceneRange range;
  range.largestRadius = 40;
  range.farthest = 20;
  range.right = 150;
  range.brightest = 1e5F;
  expectLiteralSums(randomScene(GetParam(), range, 6));
}

INSTANTIATE_TEST_SUITE_P(AllKernels, RowSumsOfKind, testing::ValuesIn(allKinds));

TEST(RowSums, moreChannelsThanRegisters_areTheLiteralSums) {
  for (const int channels : {7, 8, 11, 17}) {
    SceneRange range;
    range.channels = channels;
    range.largestRadius = 30;
    range.farthest = 10;
    expectLiteralSums(randomScene(KernelKind::Disc, range, static_cast<unsigned>(channels)));
  }
}

TEST(RowSums, moreRecordsThanABatch_areTheLiteralSums) {
  SceneRange range;
  range.records = 700;
  range.farthest = 2;
  expectLiteralSums(randomScene(KernelKind::Random, range, 8));
}

TEST(RowSums, nearShareAlone_reachesItsRadius) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 8);
  for (int radius = 0; radius <= 8; ++radius) {
    for (const int side : {-1, 1}) {
      const dvSplatRecord record{3, radius, 0.5F, 0.0F};
      expectLiteralSums(oneSplat(bank, record, side * radius));
      EXPECT_FALSE(allZero(rowSums(oneSplat(bank, record, side * radius), dense)));
      EXPECT_TRUE(allZero(rowSums(oneSplat(bank, record, side * (radius + 1)), dense)));
    }
  }
}

TEST(RowSums, farShareAlone_reachesTheNextRadius) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 8);
  for (int radius = 0; radius < 8; ++radius) {
    for (const int side : {-1, 1}) {
      const dvSplatRecord record{3, radius, 0.0F, 0.5F};
      const int reach = radius + 1;
      expectLiteralSums(oneSplat(bank, record, side * reach));
      EXPECT_FALSE(allZero(rowSums(oneSplat(bank, record, side * reach), dense)));
      EXPECT_TRUE(allZero(rowSums(oneSplat(bank, record, side * (reach + 1)), dense)));
    }
  }
}

TEST(RowSums, rowAboveTheCentre_takesTheKernelRowBelowItsCentre) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 4);
  const auto sums = rowSums(oneSplat(bank, {0, 3, 1.0F, 0.0F}, 2), dense);
  for (int c = -3; c <= 3; ++c) {
    // Row 3 - 2 of the kernel, columns in the order of the picture's.
    const auto value = static_cast<double>(bank[7].plane(1)[(3 - 2) * 7 + 3 + c]);
    EXPECT_EQ(sums[2][static_cast<std::size_t>(40 + c)], value);
    EXPECT_EQ(sums[1][static_cast<std::size_t>(40 + c)], 2.0 * value);
  }
}

TEST(RowSums, splatsOutsideTheColumns_addNothing) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 8);
  constexpr int least = std::numeric_limits<int>::min();
  constexpr int most = std::numeric_limits<int>::max();
  for (const int x : {-40 - 9, -40 - 200, 45 + 8, 45 + 200, least, most}) {
    for (const RowWay& way : allWays)
      EXPECT_TRUE(allZero(rowSums(oneSplat(bank, {x, 7, 0.5F, 0.5F}, 0), way))) << x;
  }
}

TEST(RowSums, splatsAtTheEnds_addWhatLiesWithin) {
  const dvKernelBank bank = kernelBank(KernelKind::Random, 8);
  for (const int x : {-40 - 8, -40 - 7, -40, 44, 45, 45 + 6, 45 + 7})
    expectLiteralSums(oneSplat(bank, {x, 7, 0.5F, 0.5F}, 1));
}

TEST(RowSums, columnsThatNoKernelReaches_areExactlyZero) {
  SceneRange range;
  range.left = -300;
  range.right = 900;
  range.largestRadius = 60;
  range.farthest = 2;
  range.records = 2;
  range.brightest = 1e5F;
  for (const KernelKind kind : allKinds) {
    const RowScene scene = randomScene(kind, range, 3);
    const LiteralSums literal = literalSums(scene);
    int untouched = 0;
    for (const RowWay& way : allWays) {
      const auto sums = rowSums(scene, way);
      for (std::size_t i = 0; i < sums.back().size(); ++i) {
        if (literal.back()[i].magnitude != 0.0) continue;
        ++untouched;
        for (const auto& plane : sums)
          EXPECT_EQ(plane[i], 0.0);
      }
    }
    EXPECT_GT(untouched, 0);
  }
}

TEST(RowSums, hundredsOfLargeKernels_keepTheirAccuracy) {
  // 256 source rows under kernels of 255 px.
  SceneRange range;
  range.largestRadius = 127;
  range.farthest = 128;
  range.right = 57;
  range.records = 300;
  range.channels = 2;
  RowScene scene = randomScene(KernelKind::Disc, range, 11);
  for (SceneRow& row : scene.rows) {
    for (dvSplatRecord& record : row.splats.records)
      record = {record.x, 126, record.near, 1.0F - record.near};
  }
  const LiteralSums literal = literalSums(scene);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const RowWay& way : allWays) {
      const double error = worstError(rowSums(scene, way), literal);
      // A tenth of what a finished picture may be off by; 4e-6 was measured.
      EXPECT_LE(error, 1e-5) << simdLevelName(level) << ", shape " << static_cast<int>(way.shape)
                             << ", order " << static_cast<int>(way.order);
    }
  }
}

TEST(RowSums, instructionSets_differByRoundingAlone) {
  SceneRange range;
  range.largestRadius = 40;
  const RowScene scene = randomScene(KernelKind::Disc, range, 12);
  LiteralSums baseline = literalSums(scene);
  const SimdLevelInUse useBaseline(dvSimdLevel::Baseline);
  const auto sums = rowSums(scene, dense);
  for (std::size_t p = 0; p < sums.size(); ++p) {
    for (std::size_t i = 0; i < sums[p].size(); ++i)
      baseline[p][i].value = sums[p][i];
  }
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LE(worstError(rowSums(scene, dense), baseline), sumTolerance);
  }
}

TEST(RowSums, sameSplatsAgain_giveTheSameBits) {
  const RowScene scene = randomScene(KernelKind::Disc, {}, 13);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const RowWay& way : allWays)
      EXPECT_EQ(rowSums(scene, way), rowSums(scene, way));
  }
}

TEST(RowSums, knownReach_givesTheSameBits) {
  SceneRange range;
  range.records = 700;
  range.right = 400;
  range.largestRadius = 30;
  const RowScene scene = randomScene(KernelKind::Disc, range, 21);
  for (const dvRowShape shape : {dvRowShape::Quickest, dvRowShape::Dense, dvRowShape::Rims}) {
    EXPECT_EQ(rowSums(scene, {shape, dvRowOrder::Quickest, true}),
              rowSums(scene, {shape, dvRowOrder::Quickest, false}));
  }
}

TEST(RowSums, partOfARow_isAddedAlone) {
  RowScene scene = randomScene(KernelKind::Random, {}, 14);
  scene.rows.resize(1);
  scene.rows[0].dy = 1;
  dvSplatRow& splats = scene.rows[0].splats;
  const dvKernelTable kernels(scene.bank, 1);
  dvRowSums sums(scene.channels, scene.left, scene.right);
  sums.add(splats, 10, 25, 1, kernels);
  sums.finish();
  std::vector<double> weight(static_cast<std::size_t>(scene.right - scene.left));
  sums.store(scene.channels, weight.data());

  splats.records = {splats.records.begin() + 10, splats.records.begin() + 25};
  splats.values = {splats.values.begin() + 10 * scene.channels,
                   splats.values.begin() + 25 * scene.channels};
  EXPECT_EQ(weight, rowSums(scene, quickest).back());
}

TEST(RowSums, clear_startsAfresh) {
  const RowScene scene = randomScene(KernelKind::Disc, {}, 15);
  const dvKernelTable kernels(scene.bank, 1);
  for (const RowWay& way : allWays) {
    dvRowSums sums(scene.channels, scene.left, scene.right, way.shape, way.order);
    std::vector<double> first(static_cast<std::size_t>(scene.right - scene.left));
    std::vector<double> second(first.size());
    for (std::vector<double>* plane : {&first, &second}) {
      sums.clear();
      for (const SceneRow& row : scene.rows) {
        sums.add(row.splats, 0, row.splats.records.size(), row.dy, kernels);
        sums.endSourceRow();
      }
      sums.finish();
      sums.store(0, plane->data());
      sums.add(scene.rows[14].splats, 0, 5, 0, kernels);  // left unfinished
    }
    EXPECT_EQ(first, second);
  }
}

TEST(RowSums, store_writesItsColumnsAlone) {
  RowScene scene = randomScene(KernelKind::Constant, {}, 16);
  const dvKernelTable kernels(scene.bank, 1);
  for (const int width : {0, 1, 15, 16, 17}) {
    dvRowSums sums(scene.channels, 3, 3 + width);
    sums.add(scene.rows[14].splats, 0, 40, 0, kernels);
    sums.finish();
    std::vector<float> out(40, -7.0F);
    sums.store(0, out.data() + 10);
    for (int i = 0; i < 40; ++i) {
      const bool within = i >= 10 && i < 10 + width;
      EXPECT_EQ(out[static_cast<std::size_t>(i)] == -7.0F, !within) << i;
    }
  }
}

TEST(RowSums, noColumns_takeSplatsAndStoreNothing) {
  const RowScene scene = randomScene(KernelKind::Disc, {}, 17);
  const dvKernelTable kernels(scene.bank, 1);
  for (const int right : {5, 2}) {
    dvRowSums sums(scene.channels, 5, right);
    sums.add(scene.rows[14].splats, 0, 40, 0, kernels);
    sums.endSourceRow();
    sums.finish();
    float out = -7.0F;
    sums.store(0, &out);
    EXPECT_EQ(out, -7.0F);
  }
}

TEST(RowSums, emptyTable_addsNothing) {
  RowScene scene = randomScene(KernelKind::Disc, {}, 18);
  scene.bank.clear();
  EXPECT_TRUE(allZero(rowSums(scene, quickest)));
  EXPECT_TRUE(allZero(rowSums(scene, quickestReady)));
}

TEST(RowSums, kernelWithoutAShare_isNotRead) {
  // Values that are not finite would spread even by a share of 0.
  dvKernelBank bank = kernelBank(KernelKind::Constant, 40);
  bank[81].plane(1)[40 * 81 + 40] = std::nanf("");
  for (const RowWay& way : allWays) {
    const auto sums = rowSums(oneSplat(bank, {0, 39, 1.0F, 0.0F}, 0), way);
    EXPECT_GT(sums[2][40], 0.0);
  }
}

TEST(RowSums, splatsOnOneColumn_areTheLiteralSums) {
  RowScene scene = randomScene(KernelKind::Disc, {}, 19);
  for (SceneRow& row : scene.rows) {
    for (dvSplatRecord& record : row.splats.records)
      record.x = 33;
  }
  expectLiteralSums(scene);
}

TEST(RowSums, crowdsWithGapsBetween_areTheLiteralSums) {
  SceneRange range;
  range.right = 700;
  range.records = 300;
  range.farthest = 5;
  RowScene scene = randomScene(KernelKind::Disc, range, 20);
  for (SceneRow& row : scene.rows) {
    int x = -20;
    for (dvSplatRecord& record : row.splats.records) {
      x += record.x % 40 == 0 ? 90 : 1;
      record = {x, x % 200 < 100 ? 10 : 11, record.near, record.far};
    }
  }
  expectLiteralSums(scene);
}

TEST(RowSums, sharesOfZero_addNothing) {
  const dvKernelBank bank = kernelBank(KernelKind::Constant, 8);
  EXPECT_TRUE(allZero(rowSums(oneSplat(bank, {0, 4, 0.0F, 0.0F}, 0), quickest)));
}

TEST(RowSums, everyColumnUnderTheSameLargeKernels_keepsItsAccuracy) {
  // The same products again and again: their rounding does not average out.
  SceneRange range;
  range.largestRadius = 101;
  range.farthest = 102;
  range.right = 57;
  range.channels = 1;
  RowScene scene = randomScene(KernelKind::Disc, range, 11);
  for (SceneRow& row : scene.rows) {
    dvSplatRow& splats = row.splats;
    splats.records.clear();
    splats.values.clear();
    for (int x = range.left - 102; x < range.right + 102; ++x) {
      splats.records.push_back({x, 100, 0.7F, 0.3F});
      splats.values.push_back(0.3F);
    }
    splats.sliceBegin = {0, static_cast<std::uint32_t>(splats.records.size())};
  }
  const LiteralSums literal = literalSums(scene);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    // What pictures are made with: inner parts are summed in double.
    for (const RowWay& way : {quickest, quickestReady})
      EXPECT_LE(worstError(rowSums(scene, way), literal), 5e-7) << simdLevelName(level);
    for (const RowWay& way : {dense, denseReady})
      EXPECT_LE(worstError(rowSums(scene, way), literal), 1e-5) << simdLevelName(level);
  }
}

/// Puts a splat of 1e20 beside those of 0.1; tells what stands where they alone are.
void expectNothingOfGreatValue(bool ready) {
  dvSplatRow row;
  row.records = {{10, 20, 1.0F, 0.0F}, {31, 20, 1.0F, 0.0F}, {70, 20, 1.0F, 0.0F}};
  row.values = {1e20F, 0.1F, 0.1F};
  row.sliceBegin = {0, 3};
  row.hasGreat = true;
  const dvKernelTable table(kernelBank(KernelKind::Constant, 21), 1);
  // Else these kernels are too small for inner parts.
  dvRowSums sums(1, 0, 100, dvRowShape::Rims);
  if (ready) {
    sums.add(dvReadyRow(row, 0), 0, table);
  } else {
    sums.add(row, 0, 3, 0, table);
  }
  sums.endSourceRow();
  sums.finish();
  std::vector<double> values(100);
  std::vector<double> weights(100);
  sums.store(0, values.data());
  sums.store(1, weights.data());
  for (int x = 31; x <= 90; ++x) {
    const auto at = static_cast<std::size_t>(x);
    EXPECT_NEAR(values[at], 0.1 * weights[at], 1e-7) << x;
    EXPECT_GT(weights[at], 0.0);
  }
}

TEST(RowSums, greatValueAmongOthers_leavesNothingWhereItEnds) {
  expectNothingOfGreatValue(false);
}

TEST(RowSums, greatValueInARowMadeReady_leavesNothingWhereItEnds) {
  expectNothingOfGreatValue(true);
}

TEST(RowSums, rowMadeReadyBeyondTheTable_addsNothing) {
  const RowScene scene = randomScene(KernelKind::Disc, {}, 19);
  const dvReadyRow ready(scene.rows[14].splats, scene.left);
  const dvKernelTable kernels(scene.bank, 1);
  for (const int dy : {-14, 14, 1000}) {
    dvRowSums sums(scene.channels, scene.left, scene.right);
    sums.add(ready, dy, kernels);
    sums.finish();
    EXPECT_GE(sums.touched().begin, sums.touched().end) << dy;
  }
}

TEST(RowSums, noColumns_takeARowMadeReady) {
  const RowScene scene = randomScene(KernelKind::Disc, {}, 20);
  const dvKernelTable kernels(scene.bank, 1);
  dvRowSums sums(scene.channels, 5, 5);
  sums.add(dvReadyRow(scene.rows[14].splats, 5), 0, kernels);
  sums.endSourceRow();
  sums.finish();
  float out = -7.0F;
  sums.store(0, &out);
  EXPECT_EQ(out, -7.0F);
}

}  // namespace
}  // namespace drevin::test
