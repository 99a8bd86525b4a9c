#include "engine/SliceTiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "engine/RowScene.h"
#include "engine/RowSums.h"
#include "engine/ThreadParallel.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

using Sums = std::vector<std::vector<double>>;

constexpr int channels = 2;
constexpr int largestRadius = 24;

/// Splats of one slice on a field of source rows, with two values each.
class Field {
 public:
  Field(int rows, int width, int bottom = -11, int left = -17)
      : bottom_(bottom), left_(left), width_(width), lines_(static_cast<std::size_t>(rows)) {
    group_.places = {0, 1};
    group_.kernels =
        std::make_shared<const dvKernelTable>(kernelBank(KernelKind::BlankEdges, largestRadius), 1);
    for (int i = 0; i < rows; ++i) {
      lines_[static_cast<std::size_t>(i)].groups.resize(1);
      dvCentredSplats splats;
      splats.centreY = bottom + i;
      splats.row.sliceBegin.assign(2, 0);
      lines_[static_cast<std::size_t>(i)].groups[0] = {splats};
    }
    for (const dvSplatLine& line : lines_)
      places_.push_back(&line);
  }

  int bottom() const { return bottom_; }
  int left() const { return left_; }
  int rows() const { return static_cast<int>(lines_.size()); }
  int width() const { return width_; }
  /// Output pixels: some less than the sources reach.
  dvFrameBox box() const {
    return {left_ + 5, bottom_ + 3, left_ + width_ - 9, bottom_ + rows() - 20};
  }
  const dvKernelTable& kernels() const { return *group_.kernels; }
  dvSplatRow& row(int y) { return lines_[place(y)].groups[0].front().row; }
  void forget(int y) { places_[place(y)] = nullptr; }
  bool knows(int y) const { return places_[place(y)] != nullptr; }
  std::size_t place(int y) const { return static_cast<std::size_t>(y - bottom_); }

  /// Splats come by ascending column.
  void add(int y, const dvSplatRecord& record, float first, float second) {
    row(y).records.push_back(record);
    row(y).values.insert(row(y).values.end(), {first, second});
    ++row(y).sliceBegin[1];
  }

  /// Of the rows as they are now; valid as long as the field.
  dvSliceTiles tiles(int padding = largestRadius) const {
    ThreadParallel parallel(1);
    rowsOfTiles_.push_back(std::make_unique<dvGroupRows>(places_, 0, bottom_, padding, parallel));
    return {kernels(), channels, *rowsOfTiles_.back(), 0, sources()};
  }
  dvFrameBox sources() const { return {left_, bottom_, left_ + width_, bottom_ + rows()}; }
  dvRowCost cost() const { return {kernels(), channels}; }
  dvSpectrumCache spectra() const { return dvSpectrumCache(*group_.kernels); }
  dvTransformRounding rounding() const {
    dvSerial serial;
    return {box(), channels + 1, *group_.kernels, serial};
  }

 private:
  int bottom_;
  int left_;
  int width_;
  dvSplatGroup group_;
  std::vector<dvSplatLine> lines_;
  std::vector<const dvSplatLine*> places_;
  mutable std::vector<std::unique_ptr<dvGroupRows>> rowsOfTiles_;
};

/// A splat at every `step`th pixel, of radii drawn from [least, most].
Field drawnField(int least, int most, int step = 1) {
  Field field(170, 290);
  Draw draw(5);
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    const int first = (y - field.bottom()) * 3 % step;
    for (int x = field.left() + first; x < field.left() + field.width(); x += step) {
      const float near = draw.real(0.1F, 1.0F);
      field.add(y, {x, draw.whole(least, most), near, 1.0F - near}, draw.real(0.2F, 1.0F),
                draw.real(-0.5F, 1.0F));
    }
  }
  return field;
}

Field uniformField() {
  return drawnField(20, 20);
}

dvSliceTiles chosen(const Field& field, dvTileChoice choice) {
  constexpr dvFrameBox everywhere{-10000, -10000, 10000, 10000};
  ThreadParallel parallel(2);
  dvSliceTiles tiles = field.tiles();
  tiles.choose(choice, field.cost(), everywhere, parallel);
  return tiles;
}

std::vector<dvFramePlane<float>> transformed(const Field& field, const dvSliceTiles& tiles,
                                             int workers = 2) {
  std::vector<dvFramePlane<float>> planes(channels + 1, dvFramePlane<float>(field.box()));
  ThreadParallel parallel(workers);
  dvSpectrumCache spectra = field.spectra();
  dvTransformRounding rounding = field.rounding();
  tiles.sum(spectra, parallel, planes, rounding);
  return planes;
}

std::vector<dvSplatRow> directRows(const Field& field, const dvSliceTiles& tiles) {
  std::vector<dvSplatRow> rows;
  std::size_t known = 0;
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y)
    rows.push_back(field.knows(y) ? tiles.directRow(known++) : dvSplatRow{});
  return rows;
}

std::vector<dvSplatRow> allRows(Field& field) {
  std::vector<dvSplatRow> rows;
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    rows.push_back(field.knows(y) ? field.row(y) : dvSplatRow{});
    if (!field.knows(y)) rows.back().sliceBegin.assign(2, 0);
  }
  return rows;
}

std::size_t countOf(const std::vector<dvSplatRow>& rows) {
  std::size_t count = 0;
  for (const dvSplatRow& row : rows)
    count += row.records.size();
  return count;
}

/// Sums of output row y of splats that are splatted one by one.
Sums splatted(const Field& field, const std::vector<dvSplatRow>& rows, int y) {
  const dvFrameBox box = field.box();
  dvRowSums sums(channels, box.left, box.right, dvRowShape::Dense);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const int dy = y - (field.bottom() + static_cast<int>(i));
    if (std::abs(dy) > largestRadius) continue;
    sums.add(rows[i], 0, rows[i].records.size(), dy, field.kernels());
    sums.endSourceRow();
  }
  sums.finish();
  Sums planes(channels + 1, std::vector<double>(static_cast<std::size_t>(box.width())));
  for (std::size_t plane = 0; plane < planes.size(); ++plane)
    sums.store(static_cast<int>(plane), planes[plane].data());
  return planes;
}

/// What is transformed and what is splatted directly must be everything together.
void expectEverythingOnce(Field& field, dvTileChoice choice) {
  const dvSliceTiles tiles = chosen(field, choice);
  const auto planes = transformed(field, tiles);
  const auto direct = directRows(field, tiles);
  const auto all = allRows(field);
  for (int y = field.box().bottom; y < field.box().top; y += 3) {
    const Sums wanted = splatted(field, all, y);
    const Sums rest = splatted(field, direct, y);
    for (std::size_t plane = 0; plane < wanted.size(); ++plane) {
      for (std::size_t i = 0; i < wanted[plane].size(); ++i) {
        const float part = planes[plane].row(y)[i];
        const double sum = rest[plane][i] + static_cast<double>(part);
        ASSERT_NEAR(sum, wanted[plane][i], 4e-6) << "plane " << plane << ", row " << y;
      }
    }
  }
}

TEST(SliceTiles, choiceNothing_leavesEverythingDirect) {
  Field field = uniformField();
  const dvSliceTiles tiles = chosen(field, dvTileChoice::Nothing);
  EXPECT_FALSE(tiles.hasTransforms());
  EXPECT_EQ(countOf(directRows(field, tiles)), countOf(allRows(field)));
}

TEST(SliceTiles, notYetChosen_leavesEverythingDirect) {
  Field field = uniformField();
  const dvSliceTiles tiles = field.tiles();
  EXPECT_FALSE(tiles.hasTransforms());
  EXPECT_EQ(countOf(directRows(field, tiles)), countOf(allRows(field)));
}

TEST(SliceTiles, choiceByCost_transformsUniformBlur) {
  Field field = uniformField();
  const dvSliceTiles tiles = chosen(field, dvTileChoice::ByCost);
  EXPECT_TRUE(tiles.hasTransforms());
  // The last tiles across and up are narrow: what is left is theirs.
  EXPECT_LT(countOf(directRows(field, tiles)), countOf(allRows(field)) / 3);
}

TEST(SliceTiles, choiceByCost_leavesSparseSplatsDirect) {
  EXPECT_FALSE(chosen(drawnField(20, 20, 97), dvTileChoice::ByCost).hasTransforms());
}

TEST(SliceTiles, choiceByCost_leavesSmallBlursDirect) {
  const int small = dvLeastTransformed - 2;
  EXPECT_FALSE(chosen(drawnField(small, small), dvTileChoice::ByCost).hasTransforms());
  EXPECT_TRUE(chosen(drawnField(small, small), dvTileChoice::Everything).hasTransforms());
}

TEST(SliceTiles, choiceByCost_leavesSharpPixelsDirect) {
  Field field = uniformField();
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    for (dvSplatRecord& record : field.row(y).records)
      record = {record.x, 0, 1.0F, 0.0F};
  }
  EXPECT_FALSE(chosen(field, dvTileChoice::ByCost).hasTransforms());
}

TEST(SliceTiles, choiceEverything_leavesNothingDirect) {
  const Field field = drawnField(0, largestRadius - 1, 7);
  const dvSliceTiles tiles = chosen(field, dvTileChoice::Everything);
  EXPECT_TRUE(tiles.hasTransforms());
  EXPECT_EQ(countOf(directRows(field, tiles)), 0U);
}

TEST(SliceTiles, fieldWithoutSplats_hasNothingToTransform) {
  const Field field(40, 60);
  for (const dvTileChoice choice : {dvTileChoice::ByCost, dvTileChoice::Everything})
    EXPECT_FALSE(chosen(field, choice).hasTransforms());
}

TEST(SliceTiles, noRowsOrColumns_haveNothingToTransform) {
  for (const Field& field : {Field(0, 60), Field(40, 0)})
    EXPECT_FALSE(chosen(field, dvTileChoice::Everything).hasTransforms());
}

TEST(SliceTiles, directAndTransformed_areEverythingOnce) {
  for (const dvTileChoice choice :
       {dvTileChoice::Nothing, dvTileChoice::ByCost, dvTileChoice::Everything}) {
    Field uniform = uniformField();
    expectEverythingOnce(uniform, choice);
    Field mixed = drawnField(3, largestRadius - 1, 5);
    expectEverythingOnce(mixed, choice);
  }
}

TEST(SliceTiles, populousRadiusBesideStragglers_isTransformedAlone) {
  Field field(128, 128);
  for (int y = field.bottom(); y < field.bottom() + 128; ++y) {
    for (int x = field.left(); x < field.left() + 128; ++x) {
      const bool straggler = (x + y) % 128 == 0;
      field.add(y, straggler ? dvSplatRecord{x, 8, 0.5F, 0.5F} : dvSplatRecord{x, 20, 1.0F, 0.0F},
                0.5F, 0.25F);
    }
  }
  expectEverythingOnce(field, dvTileChoice::ByCost);
  const auto direct = directRows(field, chosen(field, dvTileChoice::ByCost));
  EXPECT_EQ(countOf(direct), 128U);
  for (const dvSplatRow& row : direct) {
    for (const dvSplatRecord& record : row.records)
      EXPECT_EQ(record.radius, 8);
  }
}

TEST(SliceTiles, oneOfTwoSharesTransformed_leavesTheOtherDirect) {
  Field field(128, 128);
  for (int y = field.bottom(); y < field.bottom() + 128; ++y) {
    for (int x = field.left(); x < field.left() + 128; ++x) {
      const bool straggler = x == field.left() && y % 8 == 0;
      field.add(y, straggler ? dvSplatRecord{x, 19, 0.25F, 0.75F} : dvSplatRecord{x, 20, 1.0F, 0},
                0.5F, 0.25F);
    }
  }
  expectEverythingOnce(field, dvTileChoice::ByCost);
  const auto direct = directRows(field, chosen(field, dvTileChoice::ByCost));
  EXPECT_EQ(countOf(direct), 16U);
  for (const dvSplatRow& row : direct) {
    for (const dvSplatRecord& record : row.records) {
      EXPECT_EQ(record.near, 0.25F);
      EXPECT_EQ(record.far, 0.0F);
    }
  }
}

TEST(SliceTiles, lights_stayDirect) {
  for (const float light : {1e3F, -1e3F, 3e38F}) {
    Field field = uniformField();
    // One in either value.
    field.row(30).values[60] = light;
    field.row(77).values[45] = light;
    const auto direct = directRows(field, chosen(field, dvTileChoice::Everything));
    EXPECT_EQ(countOf(direct), 2U) << light;
    EXPECT_EQ(direct[field.place(30)].values.at(0), light);
    EXPECT_EQ(direct[field.place(77)].values.at(1), light);
    EXPECT_EQ(direct[field.place(30)].records.at(0).x, field.row(30).records[30].x);
    EXPECT_EQ(direct[field.place(30)].records.at(0).near, field.row(30).records[30].near);
  }
}

TEST(SliceTiles, lightOnBlack_staysDirect) {
  Field field = uniformField();
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y)
    std::fill(field.row(y).values.begin(), field.row(y).values.end(), 0.0F);
  field.row(30).values[60] = 1.0F;
  const auto direct = directRows(field, chosen(field, dvTileChoice::Everything));
  EXPECT_EQ(countOf(direct), 1U);
}

TEST(SliceTiles, unknownRows_addNothing) {
  Field field = uniformField();
  for (const int y : {field.bottom(), 0, 33, 34, field.bottom() + field.rows() - 1})
    field.forget(y);
  expectEverythingOnce(field, dvTileChoice::Everything);
}

TEST(SliceTiles, severalSplatsOfAPixel_areAllSummed) {
  Field field(60, 140);
  Draw draw(8);
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    for (int i = 0; i < 3 * field.width(); ++i)
      field.add(y, {field.left() + i / 3, 5 + i % 3, 0.125F, 0.25F}, draw.real(0.0F, 1.0F), 1.0F);
  }
  expectEverythingOnce(field, dvTileChoice::Everything);
}

/// Bright on the left, up to column 70, a thousandth of a thousandth on the right.
Field brightSide() {
  Field field = drawnField(12, 21);
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    dvSplatRow& row = field.row(y);
    for (std::size_t i = 0; i < row.records.size(); ++i) {
      if (row.records[i].x > 70) row.values[2 * i] *= 1e-6F;
      row.values[2 * i] *= 300.0F;
    }
  }
  return field;
}

TEST(SliceTiles, rounding_isNoMoreThanIsTold) {
  Field field = brightSide();
  const dvSliceTiles tiles = chosen(field, dvTileChoice::Everything);
  ThreadParallel parallel(2);
  dvSpectrumCache spectra = field.spectra();
  dvTransformRounding rounding = field.rounding();
  std::vector<dvFramePlane<float>> planes(channels + 1, dvFramePlane<float>(field.box()));
  tiles.sum(spectra, parallel, planes, rounding);
  const auto all = allRows(field);
  const dvFrameBox box = field.box();
  double worst = 0.0;
  for (int y = box.bottom; y < box.top; y += 5) {
    const Sums wanted = splatted(field, all, y);
    // Where the sums are dim, but the tile is not, they are off by the rounding of its transforms
    // alone.
    for (int x = 95; x < 130; ++x) {
      const auto i = static_cast<std::size_t>(x - box.left);
      const auto sum = static_cast<double>(planes[0].row(y)[i]);
      worst = std::max(worst, std::fabs(sum - wanted[0][i]) / rounding.error(0, x, y));
    }
  }
  EXPECT_LE(worst, 1.0);
  EXPECT_GT(worst, 0.1);
}

TEST(SliceTiles, brightTile_leavesItsRoundingWhereItReaches) {
  // Of two tiles side by side and one in between; the first is a million times brighter.
  Field field(128, 3 * 128);
  for (int y = field.bottom(); y < field.bottom() + field.rows(); ++y) {
    for (int x = 0; x < field.width(); ++x) {
      const float value = x < 128 ? 1e6F : 1.0F;
      field.add(y, {field.left() + x, 20, 1.0F, 0.0F}, value, value);
    }
  }
  const dvSliceTiles tiles = chosen(field, dvTileChoice::Everything);
  ThreadParallel parallel(2);
  dvSpectrumCache spectra = field.spectra();
  dvTransformRounding rounding = field.rounding();
  std::vector<dvFramePlane<float>> planes(channels + 1, dvFramePlane<float>(field.box()));
  tiles.sum(spectra, parallel, planes, rounding);
  const int y = field.bottom() + 64;
  const int dim = field.left() + 300;
  EXPECT_GT(rounding.error(0, field.left() + 64, y), 1e-2);
  EXPECT_LT(rounding.error(0, dim, y), 1e-4);
  const Sums wanted = splatted(field, allRows(field), y);
  const auto i = static_cast<std::size_t>(dim - field.box().left);
  for (std::size_t plane = 0; plane < planes.size(); ++plane)
    EXPECT_NEAR(static_cast<double>(planes[plane].row(y)[i]), wanted[plane][i], 1e-4);
}

TEST(SliceTiles, tinyShareOfAGreatValue_isSummed) {
  Field field = uniformField();
  dvSplatRow& row = field.row(30);
  row.records[40].near = 1e-38F;
  row.records[40].far = 0.0F;
  row.values[80] = 1e36F;
  for (const dvTileChoice choice : {dvTileChoice::ByCost, dvTileChoice::Everything})
    expectEverythingOnce(field, choice);
}

TEST(SliceTiles, sum_addsToWhatIsThere) {
  const Field field = uniformField();
  const dvSliceTiles tiles = chosen(field, dvTileChoice::ByCost);
  const auto once = transformed(field, tiles);
  auto twice = transformed(field, tiles);
  ThreadParallel parallel(2);
  dvSpectrumCache spectra = field.spectra();
  dvTransformRounding rounding = field.rounding();
  tiles.sum(spectra, parallel, twice, rounding);
  const int y = field.box().bottom + 40;
  for (std::size_t plane = 0; plane < once.size(); ++plane) {
    for (int i = 0; i < field.box().width(); ++i)
      EXPECT_NEAR(twice[plane].row(y)[i], 2.0F * once[plane].row(y)[i], 1e-5F);
  }
}

TEST(SliceTiles, anyNumberOfWorkers_givesTheSameBits) {
  const Field field = drawnField(3, largestRadius - 1);
  const dvSliceTiles tiles = chosen(field, dvTileChoice::ByCost);
  ASSERT_TRUE(tiles.hasTransforms());
  const auto alone = transformed(field, tiles, 1);
  for (const int workers : {2, 5}) {
    const auto together = transformed(field, tiles, workers);
    for (std::size_t plane = 0; plane < alone.size(); ++plane) {
      for (int y = field.box().bottom; y < field.box().top; ++y) {
        const float* row = alone[plane].row(y);
        EXPECT_TRUE(std::equal(row, row + field.box().width(), together[plane].row(y)));
      }
    }
  }
}

TEST(SliceTiles, abortBetweenTiles_endsTheSum) {
  const Field field = uniformField();
  const dvSliceTiles tiles = chosen(field, dvTileChoice::Everything);
  for (int items = 1; items <= 6; ++items) {
    std::vector<dvFramePlane<float>> planes(channels + 1, dvFramePlane<float>(field.box()));
    ThreadParallel parallel(4);
    parallel.abortAfter(items);
    dvSpectrumCache spectra = field.spectra();
    dvTransformRounding rounding = field.rounding();
    tiles.sum(spectra, parallel, planes, rounding);
    EXPECT_GE(parallel.begun(), items);
    EXPECT_LE(parallel.begun(), items + 4);
  }
}

}  // namespace
}  // namespace drevin::test
