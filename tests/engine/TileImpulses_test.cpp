#include "engine/TileImpulses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace drevin::test {
namespace {

constexpr int left = 100;
constexpr int bottom = -50;
constexpr std::size_t channels = 2;

/// Rows of splats in a tile, of which every kernel is transformed.
class Tile {
 public:
  Tile() {
    plan_.transformed.assign(static_cast<std::size_t>(kernels_.count()), 1);
    plan_.largest = kernels_.largestRadius();
  }
  /// A row of the tile, counted from its first.
  void add(int row, const std::vector<dvSplatRecord>& records, const std::vector<float>& values) {
    auto splats = std::make_unique<dvCentredSplats>();
    splats->centreY = bottom + row;
    splats->row = {{0, static_cast<std::uint32_t>(records.size())}, records, values};
    auto place = std::make_unique<dvGroupRows::Row>();
    *place = {splats.get(), splats->centreY};
    parts_.push_back({place.get(), {0, records.size()}});
    splats_.push_back(std::move(splats));
    rows_.push_back(std::move(place));
  }
  void leaveOut(int radius) {
    plan_.transformed[static_cast<std::size_t>(kernels_.place(radius, 0))] = 0;
  }
  int place(int radius) const { return kernels_.place(radius, 0); }
  void beginIn(dvTileImpulses& impulses) const {
    impulses.begin(left, bottom, parts_, dvTileLights(parts_, channels), plan_, kernels_);
  }

 private:
  dvCutKernels kernels_{8, 8, 0};
  dvTilePlan plan_;
  std::vector<std::unique_ptr<dvCentredSplats>> splats_;
  std::vector<std::unique_ptr<dvGroupRows::Row>> rows_;
  std::vector<dvTilePart> parts_;
};

float valueAt(const float* planes, std::size_t plane, int x, int y) {
  return planes[plane * dvTilePixels + static_cast<std::size_t>(y * dvTileSide + x)];
}

double sumOf(const float* planes, std::size_t plane) {
  const float* first = planes + plane * dvTilePixels;
  double sum = 0.0;
  for (std::size_t i = 0; i < dvTilePixels; ++i)
    sum += static_cast<double>(first[i]);
  return sum;
}

TEST(TileImpulses, shares_areWhereTheyAreCentred) {
  Tile tile;
  tile.add(0, {{left, 3, 0.25F, 0.75F}}, {2.0F, -4.0F});
  tile.add(127, {{left + 127, 3, 0.5F, 0.0F}}, {8.0F, 1.0F});
  dvTileImpulses impulses(channels);
  tile.beginIn(impulses);
  const float* near = impulses.fill(tile.place(3), {1.0F, 0.5F});
  EXPECT_EQ(valueAt(near, 0, 0, 0), 0.5F);
  EXPECT_EQ(valueAt(near, 1, 0, 0), -0.5F);
  EXPECT_EQ(valueAt(near, 2, 0, 0), 0.25F);
  EXPECT_EQ(valueAt(near, 0, 127, 127), 4.0F);
  EXPECT_EQ(valueAt(near, 2, 127, 127), 0.5F);
  EXPECT_EQ(sumOf(near, 2), 0.75);
  impulses.clear(tile.place(3));
  const float* far = impulses.fill(tile.place(4), {1.0F, 0.5F});
  EXPECT_EQ(valueAt(far, 0, 0, 0), 1.5F);
  EXPECT_EQ(valueAt(far, 2, 0, 0), 0.75F);
  EXPECT_EQ(sumOf(far, 2), 0.75);
}

TEST(TileImpulses, kernels_areThereOrNot) {
  Tile tile;
  tile.add(5, {{left + 1, 3, 0.25F, 0.75F}}, {1.0F, 1.0F});
  tile.leaveOut(4);
  dvTileImpulses impulses(channels);
  tile.beginIn(impulses);
  EXPECT_TRUE(impulses.has(tile.place(3)));
  for (const int radius : {0, 2, 4, 8})
    EXPECT_FALSE(impulses.has(tile.place(radius))) << radius;
}

TEST(TileImpulses, splatsOfOnePixel_areAdded) {
  Tile tile;
  tile.add(9, {{left + 7, 5, 0.5F, 0.0F}, {left + 7, 5, 0.25F, 0.0F}}, {1.0F, 2.0F, 3.0F, 4.0F});
  dvTileImpulses impulses(channels);
  tile.beginIn(impulses);
  const float* planes = impulses.fill(tile.place(5), {1.0F, 1.0F});
  EXPECT_EQ(valueAt(planes, 0, 7, 9), 1.25F);
  EXPECT_EQ(valueAt(planes, 1, 7, 9), 2.0F);
  EXPECT_EQ(valueAt(planes, 2, 7, 9), 0.75F);
  // Of the planes, not of the splats.
  EXPECT_NEAR(impulses.squares()[0], 1.5625, 1e-6);
  EXPECT_NEAR(impulses.squares()[1], 4.0, 1e-6);
  EXPECT_NEAR(impulses.squares()[2], 0.5625, 1e-6);
}

TEST(TileImpulses, cleared_areZeros) {
  for (const int rows : {1, 128}) {
    Tile tile;
    for (int row = 0; row < rows; ++row) {
      std::vector<dvSplatRecord> records;
      for (int x = 0; x < dvTileSide; ++x)
        records.push_back({left + x, 6, 1.0F, 0.0F});
      tile.add(row, records, std::vector<float>(records.size() * channels, 1.5F));
    }
    dvTileImpulses impulses(channels);
    tile.beginIn(impulses);
    const float* planes = impulses.fill(tile.place(6), {1.0F, 1.0F});
    EXPECT_EQ(sumOf(planes, 2), 128.0 * rows);
    impulses.clear(tile.place(6));
    EXPECT_TRUE(std::all_of(planes, planes + (channels + 1) * dvTilePixels,
                            [](float value) { return value == 0.0F; }));
  }
}

TEST(TileImpulses, shareTimesValue_isWhatMustFit) {
  Tile tile;
  tile.add(0, {{left, 3, 1e-38F, 0.0F}}, {1e38F, 0.0F});
  dvTileImpulses impulses(channels);
  tile.beginIn(impulses);
  const float* planes = impulses.fill(tile.place(3), {0x1p10F, 1.0F});
  EXPECT_NEAR(valueAt(planes, 0, 0, 0), 1024.0F, 0.1F);
}

TEST(TileImpulses, nextTile_knowsNothingOfTheLast) {
  Tile first;
  first.add(0, {{left, 3, 1.0F, 0.0F}}, {1.0F, 1.0F});
  Tile second;
  second.add(1, {{left, 5, 1.0F, 0.0F}}, {1.0F, 1.0F});
  dvTileImpulses impulses(channels);
  first.beginIn(impulses);
  impulses.fill(first.place(3), {1.0F, 1.0F});
  impulses.clear(first.place(3));
  second.beginIn(impulses);
  EXPECT_FALSE(impulses.has(second.place(3)));
  EXPECT_EQ(sumOf(impulses.fill(second.place(5), {1.0F, 1.0F}), 2), 1.0);
}

}  // namespace
}  // namespace drevin::test
