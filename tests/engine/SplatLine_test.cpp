#include "engine/SplatLine.h"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cmath>
#include <limits>

#include "defocus/SplatBench.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

/// Splats of a row with kernels of known sides; channel c holds the value that pixel() is given.
class LineBench {
 public:
  explicit LineBench(const std::vector<int>& channels = {1}, int bankSize = 12)
      : bank_(countingBank(bankSize, channels)) {
    settings.bank = &bank_;
    settings.slices = 3;
    settings.channels = channels;
  }

  dvLineSettings settings;

  /// The line of the sources, each with `pixel` by channel number.
  dvSplatLine line(const std::vector<dvSplatSource>& sources, const std::vector<float>& pixel) {
    prepare();
    dvSplatLineMaker maker(settings, sourceY);
    for (const dvSplatSource& source : sources) {
      for (const int channel : settings.channels)
        maker.pixel(channel) = pixel[static_cast<std::size_t>(channel)];
      maker.splat(source);
    }
    return maker.line();
  }

  dvLineSettings& prepare() {
    settings.groups = splatGroups(bank_, settings.splat.chromatic, settings.channels);
    return settings;
  }

  static constexpr int sourceY = 4;

 private:
  dvKernelBank bank_;
};

dvSplatSource sourceAt(int x, float coc, std::uint64_t slice = 0) {
  dvSplatSource source;
  source.x = source.clampedX = x;
  source.y = source.clampedY = LineBench::sourceY;
  source.coc = coc;
  source.slice = slice;
  return source;
}

/// The splats of the first group, which are all centred on one row.
const dvCentredSplats& onlyRow(const dvSplatLine& line) {
  EXPECT_EQ(line.groups.front().size(), 1U);
  return line.groups.front().front();
}

std::vector<int> columns(const dvSplatRow& row, std::size_t slice) {
  std::vector<int> found;
  for (std::size_t i = row.begin(slice); i < row.end(slice); ++i)
    found.push_back(row.records[i].x);
  return found;
}

void expectNoSplats(const dvSplatLine& line) {
  for (const auto& rows : line.groups) {
    for (const dvCentredSplats& splats : rows) {
      EXPECT_TRUE(splats.row.records.empty());
      EXPECT_TRUE(splats.specials.empty());
      EXPECT_TRUE(splats.notFinite.empty());
    }
  }
}

const std::vector<float> pixel{0.0F, 2.0F, 3.0F, 5.0F, 7.0F};

TEST(SplatLine, noSources_giveAGroupWithoutRows) {
  LineBench bench;
  const dvSplatLine line = bench.line({}, pixel);
  EXPECT_EQ(line.sourceY, LineBench::sourceY);
  ASSERT_EQ(line.groups.size(), 1U);
  EXPECT_TRUE(line.groups.front().empty());
}

TEST(SplatLine, sourcesOfMixedSlices_areSortedBySliceThenColumn) {
  LineBench bench;
  const dvSplatLine line =
      bench.line({sourceAt(0, 3.0F, 2), sourceAt(1, 3.0F, 0), sourceAt(2, 3.0F, 2),
                  sourceAt(5, 3.0F, 0), sourceAt(6, 3.0F, 2)},
                 pixel);
  const dvCentredSplats& splats = onlyRow(line);
  EXPECT_EQ(splats.centreY, LineBench::sourceY);
  EXPECT_EQ(splats.row.sliceBegin, (std::vector<std::uint32_t>{0, 2, 2, 5}));
  EXPECT_EQ(columns(splats.row, 0), (std::vector<int>{1, 5}));
  EXPECT_EQ(columns(splats.row, 1), std::vector<int>{});
  EXPECT_EQ(columns(splats.row, 2), (std::vector<int>{0, 2, 6}));
}

TEST(SplatLine, sortedRecords_keepTheirOwnValues) {
  LineBench bench({1, 2});
  dvSplatLineMaker maker(bench.prepare(), LineBench::sourceY);
  const std::uint64_t slices[] = {2, 0, 1, 0, 2};
  for (int x = 0; x < 5; ++x) {
    maker.pixel(1) = static_cast<float>(x) + 0.25F;
    maker.pixel(2) = static_cast<float>(x) + 0.5F;
    maker.splat(sourceAt(x, 3.0F, slices[x]));
  }
  const dvSplatLine line = maker.line();
  for (std::size_t group = 0; group < line.groups.size(); ++group) {
    const dvSplatRow& row = line.groups[group].front().row;
    ASSERT_EQ(row.values.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
      const float own = static_cast<float>(row.records[i].x);
      EXPECT_EQ(row.values[i], own + (group == 0 ? 0.25F : 0.5F));
    }
  }
}

TEST(SplatLine, slicesOutOfRange_areDropped) {
  LineBench bench;
  expectNoSplats(
      bench.line({sourceAt(0, 3.0F, 3), sourceAt(1, 3.0F, 4), sourceAt(2, 3.0F, ~std::uint64_t{0}),
                  sourceAt(3, 3.0F, std::uint64_t{1} << 32U)},
                 pixel));
}

TEST(SplatLine, weightsOfZeroOrLess_areDropped) {
  LineBench bench;
  for (const float weight : {0.0F, -0.0F, -0.5F, -infinity}) {
    dvSplatSource source = sourceAt(0, 3.5F);
    source.weight = weight;
    expectNoSplats(bench.line({source}, pixel));
  }
}

TEST(SplatLine, emptyBank_dropsEverything) {
  LineBench bench({1}, 0);
  dvLineSettings& settings = bench.settings;
  settings.groups = {{{0}, 0.0F, std::make_shared<const dvKernelTable>(*settings.bank, 1)}};
  dvSplatLineMaker maker(settings, LineBench::sourceY);
  maker.splat(sourceAt(0, 3.0F));
  expectNoSplats(maker.line());
}

TEST(SplatLine, blurBetweenSizes_sharesNeighbouringRadii) {
  LineBench bench;
  dvSplatSource source = sourceAt(-3, 5.5F);
  source.weight = 0.5F;
  const dvSplatLine line = bench.line({source}, pixel);
  const dvSplatRecord& record = onlyRow(line).row.records.at(0);
  EXPECT_EQ(record.x, -3);
  EXPECT_EQ(record.radius, 2);
  EXPECT_FLOAT_EQ(record.near, 0.5F * 0.75F);
  EXPECT_FLOAT_EQ(record.far, 0.5F * 0.25F);
}

TEST(SplatLine, wholeOddBlur_hasNoFarShare) {
  LineBench bench;
  const dvSplatLine line = bench.line({sourceAt(0, 7.0F)}, pixel);
  const dvSplatRecord& record = onlyRow(line).row.records.at(0);
  EXPECT_EQ(record.radius, 3);
  EXPECT_EQ(record.near, 1.0F);
  EXPECT_EQ(record.far, 0.0F);
}

TEST(SplatLine, negativeShare_isLeftOut) {
  // A blur below 1 has 1.25 of entry 1 and less than nothing of its neighbour.
  LineBench bench;
  const dvSplatLine line = bench.line({sourceAt(0, 0.5F)}, pixel);
  const dvSplatRecord& record = onlyRow(line).row.records.at(0);
  EXPECT_EQ(record.radius, 0);
  EXPECT_EQ(record.near, 1.25F);
  EXPECT_EQ(record.far, 0.0F);
}

TEST(SplatLine, bothKernelsAtTheBanksEnd_areOneSize) {
  for (const int size : {8, 9}) {
    LineBench bench({1}, size);
    const int last = kernelSide(size - 1);
    const dvSplatLine line = bench.line({sourceAt(0, static_cast<float>(size) - 0.25F)}, pixel);
    const dvSplatRecord& record = onlyRow(line).row.records.at(0);
    EXPECT_EQ(record.radius, last / 2) << size;
    EXPECT_FLOAT_EQ(record.near, 1.0F) << size;
    EXPECT_EQ(record.far, 0.0F) << size;
  }
}

TEST(SplatLine, everyBlurOfABank_staysWithinItsRadii) {
  for (const int size : {1, 2, 3, 8, 9, 12}) {
    LineBench bench({1}, size);
    const int largest = kernelSide(size - 1) / 2;
    for (float coc = 0.0F; coc < static_cast<float>(size) + 2.0F; coc += 0.125F) {
      const dvSplatLine line = bench.line({sourceAt(0, coc)}, pixel);
      const dvSplatRecord& record = onlyRow(line).row.records.at(0);
      EXPECT_LE(record.radius + (record.far > 0.0F ? 1 : 0), largest) << size << ", " << coc;
      EXPECT_GE(record.near, 0.0F);
      EXPECT_GE(record.far, 0.0F);
    }
  }
}

TEST(SplatLine, nanBlur_takesTheLastKernelAlone) {
  LineBench bench;
  for (const float coc : {nan, infinity, -1.0F, 1e30F}) {
    const dvSplatLine line = bench.line({sourceAt(0, coc)}, pixel);
    EXPECT_TRUE(onlyRow(line).specials.empty());
    const dvSplatRecord& record = onlyRow(line).row.records.at(0);
    EXPECT_EQ(record.radius, 5);
    EXPECT_EQ(record.near, 1.0F);
    EXPECT_EQ(record.far, 0.0F);
  }
}

/// Values by channel place, put together from the groups.
std::vector<float> valuesByPlace(const dvLineSettings& settings, const dvSplatLine& line) {
  std::vector<float> values(settings.channels.size());
  for (std::size_t g = 0; g < settings.groups.size(); ++g) {
    const std::vector<std::size_t>& places = settings.groups[g].places;
    for (std::size_t i = 0; i < places.size(); ++i)
      values[places[i]] = line.groups[g].front().row.values[i];
  }
  return values;
}

TEST(SplatLine, bloom_isAddedToTheColoursAlone) {
  LineBench bench({1, 2, 3, 4});
  bench.settings.splat.bloom = {0.5F, 0.0F, 2.5F, 10, 10};
  dvSplatSource source = sourceAt(0, 3.0F);
  source.bloomMatte = 0.5F;
  const std::vector<float> values = valuesByPlace(bench.settings, bench.line({source}, pixel));
  EXPECT_FLOAT_EQ(values[0], 2.0F);
  EXPECT_FLOAT_EQ(values[1], 3.0F + 0.5F * 0.25F);
  EXPECT_FLOAT_EQ(values[2], 5.0F + 2.5F * 0.25F);
  EXPECT_EQ(values[3], 7.0F);
}

TEST(SplatLine, bloomOnly_leavesTheLightAlone) {
  LineBench bench({1, 2, 3, 4});
  bench.settings.splat.bloom = {0.5F, 0.0F, 2.5F, 10, 10};
  bench.settings.splat.bloomOnly = true;
  const std::vector<float> values =
      valuesByPlace(bench.settings, bench.line({sourceAt(0, 3.0F)}, pixel));
  EXPECT_EQ(values[0], 0.0F);
  EXPECT_FLOAT_EQ(values[1], 0.25F);
  EXPECT_FLOAT_EQ(values[2], 1.25F);
  EXPECT_EQ(values[3], 7.0F);
}

TEST(SplatLine, bloom_isPlacedByTheClampedPosition) {
  LineBench bench;
  bench.settings.splat.bloom = {0.5F, 2.0F, 1.0F, 10, 10};
  dvSplatSource source = sourceAt(3, 3.0F);
  source.clampedX = 9;
  const dvSplatLine line = bench.line({source}, pixel);
  const float amount = bloomAmount(bench.settings.splat.bloom, 9, LineBench::sourceY);
  EXPECT_GT(amount, 0.1F);
  EXPECT_FLOAT_EQ(onlyRow(line).row.values[0], 2.0F + 1.0F * amount);
}

/// Red moves by 3 px and green by 2 px along both axes where the blur is 12.
dvChromaticAberration shifts() {
  dvChromaticAberration aberration;
  aberration.amount = 10.0F;
  aberration.offset[0] = 1.1F;
  aberration.offset[1] = 0.9F;
  return aberration;
}

class ShiftedLine : public testing::Test {
 protected:
  ShiftedLine() : bench({1, 2, 3}, 20) { bench.settings.splat.chromatic = shifts(); }

  /// Rows of the channel's group, of which it must be the only one.
  const std::vector<dvCentredSplats>& rowsOf(int channel, const dvSplatLine& line) const {
    for (std::size_t g = 0; g < bench.settings.groups.size(); ++g) {
      const std::vector<std::size_t>& places = bench.settings.groups[g].places;
      if (bench.settings.channels[places.front()] != channel) continue;
      EXPECT_EQ(places.size(), 1U);
      return line.groups[g];
    }
    ADD_FAILURE() << "no group of channel " << channel;
    return line.groups.front();
  }

  LineBench bench;
};

TEST_F(ShiftedLine, chromaticShift_putsChannelsAtPlacesOfTheirOwn) {
  const dvSplatLine line = bench.line({sourceAt(20, 12.0F)}, pixel);
  const int places[] = {23, 22, 20};
  for (int channel = 1; channel <= 3; ++channel) {
    const auto& rows = rowsOf(channel, line);
    ASSERT_EQ(rows.size(), 1U);
    const int shift = places[channel - 1] - 20;
    EXPECT_EQ(rows[0].centreY, LineBench::sourceY + shift) << channel;
    EXPECT_EQ(rows[0].row.records.at(0).x, 20 + shift) << channel;
    EXPECT_EQ(rows[0].row.values, std::vector<float>{pixel[static_cast<std::size_t>(channel)]});
  }
}

TEST_F(ShiftedLine, negativePlaces_areTruncatedTowardZero) {
  // Shift 0.1 * (coc / 2 - 1) * 6 for red.
  for (const int x : {-2, -3, -10}) {
    for (const float coc : {5.0F, 7.0F, 12.0F}) {
      const dvSplatLine line = bench.line({sourceAt(x, coc)}, pixel);
      const double moved = x + 0.1 * (static_cast<double>(coc) / 2.0 - 1.0) * 6.0;
      EXPECT_EQ(rowsOf(1, line).at(0).row.records.at(0).x, static_cast<int>(moved)) << x;
    }
  }
  const dvSplatLine line = bench.line({sourceAt(-2, 7.0F)}, pixel);
  EXPECT_EQ(rowsOf(1, line).at(0).row.records.at(0).x, 0);
}

TEST_F(ShiftedLine, differentBlurs_areCentredOnDifferentRows) {
  const dvSplatLine line = bench.line(
      {sourceAt(0, 12.0F), sourceAt(1, 2.0F), sourceAt(2, 12.0F, 1), sourceAt(3, 12.0F)}, pixel);
  const auto& rows = rowsOf(1, line);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].centreY, LineBench::sourceY);
  EXPECT_EQ(columns(rows[0].row, 0), std::vector<int>{1});
  EXPECT_EQ(rows[1].centreY, LineBench::sourceY + 3);
  EXPECT_EQ(columns(rows[1].row, 0), (std::vector<int>{3, 6}));
  EXPECT_EQ(columns(rows[1].row, 1), std::vector<int>{5});
  EXPECT_EQ(rowsOf(3, line).size(), 1U);
}

TEST_F(ShiftedLine, samplesThatMovePastOneAnother_areSortedByColumn) {
  // Red of blurs of 7 and 5 moves by 1.5 and 0.9 px: from row -1 both go to row 0.
  bench.prepare();
  dvSplatLineMaker maker(bench.settings, -1);
  float value = 0.0F;
  for (const std::uint64_t slice : {2U, 0U}) {
    for (const float coc : {7.0F, 5.0F, 7.0F}) {
      dvSplatSource source = sourceAt(20, coc, slice);
      source.y = -1;
      maker.pixel(1) = value += 1.0F;
      maker.splat(source);
    }
  }
  const dvSplatLine line = maker.line();
  const auto& rows = rowsOf(1, line);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].centreY, 0);
  for (const std::size_t slice : {0U, 2U})
    EXPECT_EQ(columns(rows[0].row, slice), (std::vector<int>{20, 21, 21}));
  EXPECT_EQ(rows[0].row.values, (std::vector<float>{5.0F, 4.0F, 6.0F, 2.0F, 1.0F, 3.0F}));
}

TEST_F(ShiftedLine, chromaticMatte_scalesTheBlurThatShifts) {
  dvSplatSource source = sourceAt(20, 12.0F);
  source.chromaticMatte = 0.0F;
  const dvSplatLine line = bench.line({source}, pixel);
  EXPECT_EQ(rowsOf(1, line).at(0).row.records.at(0).x, 20);
  source.chromaticMatte = 3.0F;
  const dvSplatLine far = bench.line({source}, pixel);
  EXPECT_EQ(rowsOf(1, far).at(0).row.records.at(0).x, 20 + 10);
}

TEST_F(ShiftedLine, shiftThatNoIntHolds_isThePlaceThatNothingReaches) {
  dvSplatSource source = sourceAt(20, 12.0F);
  source.chromaticMatte = infinity;
  const dvSplatLine line = bench.line({source}, pixel);
  EXPECT_EQ(rowsOf(1, line).at(0).centreY, std::numeric_limits<int>::min());
  EXPECT_EQ(rowsOf(1, line).at(0).row.records.at(0).x, std::numeric_limits<int>::min());
  EXPECT_EQ(rowsOf(3, line).at(0).row.records.at(0).x, 20);
}

TEST(SplatLine, valueThatIsNotFinite_isARunAndARecordOfZero) {
  LineBench bench;
  for (const float value : {nan, infinity, -infinity}) {
    const dvSplatLine line = bench.line({sourceAt(-7, 5.5F, 1)}, {0.0F, value});
    const dvCentredSplats& splats = onlyRow(line);
    EXPECT_EQ(splats.row.records.size(), 1U);
    EXPECT_EQ(splats.row.values, std::vector<float>{0.0F});
    EXPECT_EQ(splats.row.sliceBegin, (std::vector<std::uint32_t>{0, 0, 1, 1}));
    EXPECT_TRUE(splats.specials.empty());
    ASSERT_EQ(splats.notFinite.size(), 1U);
    const dvNotFiniteRun& run = splats.notFinite[0];
    EXPECT_EQ(run.slice, 1U);
    EXPECT_EQ(run.x, -7);
    EXPECT_EQ(run.count, 1);
    EXPECT_EQ(run.radius[0], 2);
    EXPECT_EQ(run.radius[1], 3);
    ASSERT_EQ(run.values.size(), 1U);
    EXPECT_TRUE(std::isnan(value) ? std::isnan(run.values[0]) : run.values[0] == value);
  }
}

TEST(SplatLine, valueThatIsNotFiniteOfAWholeBlur_reachesOneKernel) {
  LineBench bench;
  const dvSplatLine line = bench.line({sourceAt(0, 5.0F)}, {0.0F, nan});
  EXPECT_EQ(onlyRow(line).notFinite.at(0).radius[0], 2);
  EXPECT_EQ(onlyRow(line).notFinite.at(0).radius[1], -1);
}

TEST(SplatLine, neighboursThatAreNotFiniteAlike_areOneRun) {
  LineBench bench;
  const dvSplatLine line = bench.line({sourceAt(0, 5.0F), sourceAt(1, 5.0F), sourceAt(2, 5.0F),
                                       sourceAt(4, 5.0F), sourceAt(5, 7.0F), sourceAt(6, 7.0F, 1)},
                                      {0.0F, infinity});
  std::vector<int> counts;
  for (const dvNotFiniteRun& run : onlyRow(line).notFinite)
    counts.push_back(run.count);
  EXPECT_EQ(counts, (std::vector<int>{3, 1, 1, 1}));
  EXPECT_EQ(onlyRow(line).row.records.size(), 6U);
}

TEST(SplatLine, oneChannelThatIsNotFinite_leavesTheOthersOfItsGroup) {
  LineBench bench({1, 2});
  bench.prepare().groups.front().places = {0, 1};
  bench.settings.groups.resize(1);
  dvSplatLineMaker maker(bench.settings, LineBench::sourceY);
  maker.pixel(1) = infinity;
  maker.pixel(2) = 3.0F;
  maker.splat(sourceAt(0, 3.0F));
  const dvSplatLine line = maker.line();
  EXPECT_EQ(onlyRow(line).row.values, (std::vector<float>{0.0F, 3.0F}));
  EXPECT_EQ(onlyRow(line).notFinite.at(0).values, (std::vector<float>{infinity, 0.0F}));
}

TEST(SplatLine, valueThatMeetsAKernelThatIsNotFinite_isASpecialSplat) {
  dvKernelBank bank = countingBank(12, {1});
  bank.back().plane(1)[0] = infinity;
  const float coc = static_cast<float>(bank.back().width);
  dvLineSettings settings;
  settings.bank = &bank;
  settings.channels = {1};
  settings.groups = splatGroups(bank, {}, {1});
  dvSplatLineMaker maker(settings, 0);
  maker.pixel(1) = nan;
  maker.splat(sourceAt(0, coc));
  const dvSplatLine line = maker.line();
  EXPECT_TRUE(onlyRow(line).row.records.empty());
  EXPECT_EQ(onlyRow(line).specials.size(), 1U);
}

TEST(SplatLine, weightThatIsNotFinite_isASpecialSplatAndNothingElse) {
  LineBench bench;
  for (const float weight : {nan, infinity}) {
    dvSplatSource source = sourceAt(0, 5.5F);
    source.weight = weight;
    const dvSplatLine line = bench.line({source}, pixel);
    EXPECT_TRUE(onlyRow(line).row.records.empty());
    ASSERT_EQ(onlyRow(line).specials.size(), 1U);
    EXPECT_FALSE(std::isfinite(onlyRow(line).specials[0].share[0]));
  }
}

TEST(SplatLine, infiniteWeightOfAWholeBlur_hasANanShareForTheOtherKernel) {
  // 0 times infinity: the row code splats it as well.
  LineBench bench;
  dvSplatSource source = sourceAt(0, 5.0F);
  source.weight = infinity;
  const dvSplatLine line = bench.line({source}, pixel);
  const dvSpecialSplat& special = onlyRow(line).specials.at(0);
  EXPECT_EQ(special.share[0], infinity);
  EXPECT_TRUE(std::isnan(special.share[1]));
}

TEST(SplatLine, bloomThatOverflows_isNotFinite) {
  LineBench bench;
  bench.settings.splat.bloom = {4.0F, 0.0F, 0.5F, 10, 10};
  const dvSplatLine line = bench.line({sourceAt(0, 3.0F)}, {0.0F, 3e38F});
  EXPECT_EQ(onlyRow(line).row.values, std::vector<float>{0.0F});
  EXPECT_EQ(onlyRow(line).notFinite.size(), 1U);
}

TEST(SplatLine, nanInOneGroup_leavesTheOthersAsTheyAre) {
  LineBench bench({1, 2});
  const dvSplatLine line = bench.line({sourceAt(0, 3.0F)}, {0.0F, nan, 3.0F});
  ASSERT_EQ(line.groups.size(), 2U);
  EXPECT_EQ(line.groups[0].front().notFinite.size(), 1U);
  EXPECT_TRUE(line.groups[1].front().notFinite.empty());
  EXPECT_EQ(line.groups[1].front().row.values, std::vector<float>{3.0F});
}

TEST(SplatLine, lastValueOfAllSplats_isOneOrNot) {
  LineBench bench({1, 2});
  const auto lastIsOne = [&](float first, float last) {
    bench.prepare().groups.front().places = {0, 1};
    bench.settings.groups.resize(1);
    dvSplatLineMaker maker(bench.settings, LineBench::sourceY);
    for (int x = 0; x < 3; ++x) {
      maker.pixel(1) = first;
      maker.pixel(2) = x == 1 ? last : 1.0F;
      maker.splat(sourceAt(x, 3.0F));
    }
    return onlyRow(maker.line()).lastIsOne;
  };
  EXPECT_TRUE(lastIsOne(0.5F, 1.0F));
  EXPECT_FALSE(lastIsOne(1.0F, 0.5F));
  EXPECT_TRUE(lastIsOne(nan, 1.0F));
  EXPECT_FALSE(lastIsOne(1.0F, nan));
}

TEST(SplatLine, severalSourcesOfAColumn_areAllKeptInTheirOrder) {
  LineBench bench;
  dvSplatLineMaker maker(bench.prepare(), LineBench::sourceY);
  float value = 0.0F;
  for (const int x : {2, 2, 2, 3, 3}) {
    maker.pixel(1) = ++value;
    dvSplatSource source = sourceAt(x, 1.0F + 2.0F * value, value == 2.0F ? 0 : 1);
    source.weight = 1.0F / value;
    maker.splat(source);
  }
  const dvSplatLine line = maker.line();
  const dvSplatRow& row = onlyRow(line).row;
  EXPECT_EQ(columns(row, 0), std::vector<int>{2});
  EXPECT_EQ(columns(row, 1), (std::vector<int>{2, 2, 3, 3}));
  EXPECT_EQ(row.values, (std::vector<float>{2.0F, 1.0F, 3.0F, 4.0F, 5.0F}));
  for (std::size_t i = 0; i < row.records.size(); ++i)
    EXPECT_FLOAT_EQ(row.records[i].near, 1.0F / row.values[i]);
}

TEST(SplatLine, line_leavesTheMakerEmpty) {
  LineBench bench;
  dvSplatLineMaker maker(bench.prepare(), LineBench::sourceY);
  maker.pixel(1) = nan;
  maker.splat(sourceAt(0, 3.0F));
  EXPECT_EQ(maker.line().groups.front().size(), 1U);
  EXPECT_TRUE(maker.line().groups.front().empty());
}

TEST(SplatLine, oneOfAnInfiniteShare_isNotItsOwnWeight) {
  LineBench bench;
  dvSplatSource source = sourceAt(0, 3.0F);
  source.weight = infinity;
  EXPECT_FALSE(onlyRow(bench.line({source}, {0.0F, 1.0F})).lastIsOne);
  source.weight = 2.0F;
  EXPECT_TRUE(onlyRow(bench.line({source}, {0.0F, 1.0F})).lastIsOne);
}

TEST(SplatLine, oneUnderAnInfiniteKernel_isNotItsOwnWeight) {
  dvKernelBank bank = countingBank(12, {1});
  bank.back().plane(1)[0] = infinity;
  dvLineSettings settings;
  settings.bank = &bank;
  settings.channels = {1};
  settings.groups = splatGroups(bank, {}, {1});
  const auto lastIsOne = [&](float coc) {
    dvSplatLineMaker maker(settings, 0);
    maker.pixel(1) = 1.0F;
    maker.splat(sourceAt(0, coc));
    return onlyRow(maker.line()).lastIsOne;
  };
  EXPECT_FALSE(lastIsOne(static_cast<float>(bank.back().width)));
  EXPECT_TRUE(lastIsOne(3.0F)) << "of finite kernels";
}

TEST(SplatLine, greatValues_areKnownByTheirRow) {
  LineBench bench;
  const auto hasGreat = [&](float value, float weight) {
    dvSplatSource source = sourceAt(0, 3.0F);
    source.weight = weight;
    return onlyRow(bench.line({source, sourceAt(1, 3.0F)}, {0.0F, value})).row.hasGreat;
  };
  EXPECT_FALSE(hasGreat(1e8F, 1.0F));
  EXPECT_TRUE(hasGreat(1e10F, 1.0F));
  EXPECT_TRUE(hasGreat(-1e10F, 1.0F));
  EXPECT_TRUE(hasGreat(1e8F, 1e3F));
  EXPECT_TRUE(hasGreat(0.0F, 1e10F));
}

/// Lists that a line reserves must be counted, or bands of them grow without end.
TEST(SplatLine, bytes_areTheCapacitiesOfAllLists) {
  LineBench bench({1, 2});
  EXPECT_GT(bench.line({}, pixel).bytes(), 0U) << "a list of groups without rows";
  const std::size_t one = bench.line({sourceAt(0, 3.0F)}, pixel).bytes();
  EXPECT_GE(one, sizeof(dvSplatRecord) + 2 * sizeof(float));
  dvSplatSource special = sourceAt(1, 3.0F);
  special.weight = infinity;
  EXPECT_GE(bench.line({sourceAt(0, 3.0F), special}, pixel).bytes(), one + sizeof(dvSpecialSplat));
  const std::vector<float> notFinite{0.0F, nan, 3.0F};
  EXPECT_GE(bench.line({sourceAt(0, 3.0F)}, notFinite).bytes(), one + sizeof(dvNotFiniteRun));
}

#if defined(__GLIBC__) && DREVIN_SANITIZED == 0
/// Memory that the program has from the allocator.
std::size_t allocated() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// Lines of few sources on rows of which every pixel could be one: what they count in parts of what
/// they take.
double countedPart(const dvLineSettings& settings, bool inOrder) {
  constexpr std::size_t rowWidth = 8000;
  constexpr std::size_t rows = 500;
  std::vector<dvSplatLine> lines;
  lines.reserve(rows);
  std::size_t counted = 0;
  const std::size_t before = allocated();
  for (std::size_t row = 0; row < rows; ++row) {
    dvSplatLineMaker maker(settings, LineBench::sourceY, rowWidth);
    for (int i = 0; i < 40; ++i)
      maker.splat(sourceAt(i * 190, 3.0F, inOrder ? 0 : static_cast<std::uint64_t>(i % 3)));
    lines.push_back(maker.line());
    counted += lines.back().bytes();
  }
  return static_cast<double>(counted) / static_cast<double>(allocated() - before);
}

TEST(SplatLine, fewSplatsOfAWideRow_takeTheMemoryThatIsCounted) {
  LineBench bench({1, 2, 3, 4});
  // The allocator adds some bytes to each list.
  EXPECT_NEAR(countedPart(bench.prepare(), true), 0.97, 0.04);
  EXPECT_NEAR(countedPart(bench.prepare(), false), 0.97, 0.04);
}
#endif

}  // namespace
}  // namespace drevin::test
