#include "engine/TileSum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "engine/SimdLevels.h"
#include "engine/TileRandomKernels.h"

namespace drevin::test {
namespace {

/// Largest error of a pixel, relative to the root of (energy of the tile times energy of the
/// kernel) summed over the radii. Measured: 1.1e-7 at most.
constexpr double pixelTolerance = 2e-7;

using Values = std::vector<float>;

/// Planes of side x side where about `density` of the pixels are not zero, the same in each plane.
Values sparsePlanes(int side, int planes, double density, unsigned seed) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<double> chance(0.0, 1.0);
  std::uniform_real_distribution<float> value(-1.0F, 3.0F);
  const int area = side * side;
  Values values(static_cast<std::size_t>(planes * area), 0.0F);
  for (int i = 0; i < area; ++i) {
    if (chance(generator) >= density) continue;
    for (int p = 0; p < planes; ++p)
      values.data()[p * area + i] = value(generator);
  }
  return values;
}

/// One plane of a tile with all its surroundings, in double.
class DirectTile {
 public:
  DirectTile(int side, int reach)
      : side_(side),
        reach_(reach),
        width_(side + 2 * reach),
        sums_(static_cast<std::size_t>(width_ * width_)) {}

  void add(const float* plane, const dvKernelTable& table, int radius) {
    double energy = 0.0;
    for (int j = 0; j < side_; ++j) {
      for (int i = 0; i < side_; ++i, ++plane) {
        if (*plane != 0.0F) splat(i, j, *plane, table, radius);
        energy += static_cast<double>(*plane) * *plane;
      }
    }
    double kernelEnergy = 0.0;
    for (int r = 0; r <= 2 * radius; ++r) {
      for (int c = 0; c <= 2 * radius; ++c)
        kernelEnergy += static_cast<double>(table.row(radius, r)[c]) * table.row(radius, r)[c];
    }
    scale_ += std::sqrt(energy * kernelEnergy);
  }

  double at(int x, int y) const { return sums_.data()[(y + reach_) * width_ + x + reach_]; }
  double scale() const { return scale_; }

 private:
  void splat(int i, int j, double value, const dvKernelTable& table, int radius) {
    for (int y = j - radius; y <= j + radius; ++y) {
      const float* row = table.row(radius, radius + j - y);
      for (int x = i - radius; x <= i + radius; ++x) {
        sums_.data()[(y + reach_) * width_ + x + reach_] +=
            value * static_cast<double>(row[radius + x - i]);
      }
    }
  }

  int side_;
  int reach_;
  int width_;
  double scale_ = 0.0;
  std::vector<double> sums_;
};

struct Radius {
  int radius;
  double density;
};

struct Scene {
  int side = 32;
  int length = 64;
  int planes = 1;
  std::vector<Radius> radii;
  int reach() const {
    int reach = 0;
    for (const Radius& radius : radii)
      reach = std::max(reach, radius.radius);
    return reach;
  }
};

/// Adds all radii of the scene, drawn from `seed`, to `sum`, and likewise to `direct` by plane.
void addScene(const Scene& scene, unsigned seed, dvTileSum& sum, std::vector<DirectTile>& direct) {
  const dvKernelTable table = randomKernels(scene.reach(), seed);
  dvSpectrumCache spectra(table);
  direct.assign(static_cast<std::size_t>(scene.planes), {scene.side, scene.reach()});
  sum.begin(scene.length);
  for (const Radius& radius : scene.radii) {
    const Values values = sparsePlanes(scene.side, scene.planes, radius.density, ++seed);
    sum.add(values.data(), spectra.spectrum(scene.length, {radius.radius}));
    const float* plane = values.data();
    for (DirectTile& tile : direct) {
      tile.add(plane, table, radius.radius);
      plane += scene.side * scene.side;
    }
  }
  sum.finish();
}

/// Largest relative error of any plane; a picture of the whole reach, beginning at 1000 everywhere
/// outside `box`, where it must stay.
double worstError(const Scene& scene, const dvTileSum& sum, const std::vector<DirectTile>& direct,
                  const dvTileBox& box) {
  const int reach = scene.reach();
  const int stride = scene.side + 2 * reach + 3;
  double worst = 0.0;
  for (std::size_t p = 0; p < direct.size(); ++p) {
    Values target(static_cast<std::size_t>(stride * stride), 1000.0F);
    float* origin = target.data() + reach * stride + reach;
    for (int y = std::max(box.bottom, -reach); y < std::min(box.top, scene.side + reach); ++y) {
      for (int x = std::max(box.left, -reach); x < std::min(box.right, scene.side + reach); ++x)
        origin[y * stride + x] = 0.5F;
    }
    sum.addInto(static_cast<int>(p), box, reach, 1.0F, origin, 0, stride);
    for (int y = -reach; y < scene.side + reach; ++y) {
      for (int x = -reach; x < scene.side + reach; ++x) {
        const bool inside = x >= box.left && x < box.right && y >= box.bottom && y < box.top;
        const double expected = inside ? 0.5 + direct[p].at(x, y) : 1000.0;
        worst = std::max(worst, std::abs(origin[y * stride + x] - expected) / direct[p].scale());
      }
    }
  }
  return worst;
}

dvTileBox everything() {
  return {-10000, -10000, 10000, 10000};
}

double sceneError(const Scene& scene, unsigned seed) {
  dvTileSum sum(scene.side, scene.planes);
  std::vector<DirectTile> direct;
  addScene(scene, seed, sum, direct);
  return worstError(scene, sum, direct, everything());
}

TEST(TileSum, oneRadius_isTheDirectConvolution) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (int planes = 1; planes <= 6; ++planes)
      EXPECT_LT(sceneError({32, 64, planes, {{16, 0.2}}}, 1), pixelTolerance) << planes;
  }
}

TEST(TileSum, severalRadii_areSummed) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (int planes = 1; planes <= 6; ++planes) {
      const Scene scene{48, 96, planes, {{3, 0.3}, {24, 0.02}, {0, 1.0}, {10, 0.1}}};
      EXPECT_LT(sceneError(scene, 2), pixelTolerance) << planes;
    }
  }
}

TEST(TileSum, lengthsInUse_areTheDirectConvolution) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LT(sceneError({128, 144, 3, {{8, 0.02}}}, 10), pixelTolerance);
    EXPECT_LT(sceneError({128, 160, 3, {{16, 0.02}}}, 3), pixelTolerance);
    EXPECT_LT(sceneError({128, 192, 3, {{32, 0.02}}}, 4), pixelTolerance);
    EXPECT_LT(sceneError({128, 240, 3, {{56, 0.005}}}, 11), pixelTolerance);
    EXPECT_LT(sceneError({128, 256, 3, {{64, 0.005}}}, 5), pixelTolerance);
    EXPECT_LT(sceneError({128, 288, 3, {{80, 0.003}}}, 12), pixelTolerance);
    EXPECT_LT(sceneError({128, 320, 3, {{96, 0.002}}}, 13), pixelTolerance);
    EXPECT_LT(sceneError({128, 384, 3, {{128, 0.002}}}, 6), pixelTolerance);
    EXPECT_LT(sceneError({128, 480, 3, {{176, 0.001}}}, 14), pixelTolerance);
  }
}

TEST(TileSum, longTransforms_areTheDirectConvolution) {
  EXPECT_LT(sceneError({256, 512, 2, {{128, 0.0005}}}, 7), pixelTolerance);
  EXPECT_LT(sceneError({384, 640, 1, {{128, 0.0003}}}, 8), pixelTolerance);
}

TEST(TileSum, sideThatIsNoMultipleOfSixteen_isWhole) {
  EXPECT_LT(sceneError({1, 16, 2, {{7, 1.0}}}, 1), pixelTolerance);
  EXPECT_LT(sceneError({37, 64, 3, {{13, 0.2}}}, 2), pixelTolerance);
  EXPECT_LT(sceneError({50, 80, 1, {{15, 0.2}}}, 3), pixelTolerance);
}

TEST(TileSum, fullTile_isTheDirectConvolution) {
  EXPECT_LT(sceneError({64, 96, 5, {{16, 1.0}}}, 9), pixelTolerance);
}

TEST(TileSum, onePixel_isTheKernelThere) {
  const int side = 32;
  const int radius = 9;
  const dvKernelTable table = randomKernels(radius, 4);
  Values values(side * side, 0.0F);
  values[5 * side + 30] = 2.0F;
  dvTileSum sum(side, 1);
  sum.begin(64);
  const dvKernelSpectrum spectrum(table, 64, {radius});
  sum.add(values.data(), spectrum);
  sum.finish();
  const int stride = side + 2 * radius;
  Values target(static_cast<std::size_t>(stride * stride), 0.0F);
  float* origin = target.data() + radius * stride + radius;
  sum.addInto(0, everything(), radius, 1.0F, origin, 0, stride);
  for (int dy = -radius; dy <= radius; ++dy) {
    for (int dx = -radius; dx <= radius; ++dx) {
      const float expected = 2.0F * table.row(radius, radius - dy)[radius + dx];
      EXPECT_NEAR(origin[(5 + dy) * stride + 30 + dx], expected, 1e-5F) << dx << ' ' << dy;
    }
  }
}

TEST(TileSum, box_limitsWhatIsAdded) {
  const Scene scene{48, 96, 3, {{20, 0.1}, {24, 0.1}}};
  dvTileSum sum(scene.side, scene.planes);
  std::vector<DirectTile> direct;
  addScene(scene, 12, sum, direct);
  const dvTileBox boxes[] = {{0, 0, 48, 48},    {-24, -24, 72, 72}, {-5, -7, 3, 1000},
                             {47, -24, 72, 0},  {10, 10, 11, 11},   {-1000, 60, 1000, 72},
                             {15, -24, 33, 17}, {5, 5, 5, 9},       {30, 2, 20, 9},
                             {72, 72, 90, 90},  {-90, 0, -24, 48}};
  for (const dvTileBox& box : boxes)
    EXPECT_LT(worstError(scene, sum, direct, box), pixelTolerance) << box.left << ' ' << box.bottom;
}

TEST(TileSum, tilesOneAfterTheOther_doNotShowInEachOther) {
  const Scene large{48, 96, 5, {{20, 0.5}, {24, 0.5}}};
  const Scene small{48, 64, 5, {{4, 0.1}}};
  dvTileSum sum(48, 5);
  std::vector<DirectTile> direct;
  addScene(large, 1, sum, direct);
  addScene(small, 2, sum, direct);
  EXPECT_LT(worstError(small, sum, direct, everything()), pixelTolerance);
  addScene(large, 3, sum, direct);
  EXPECT_LT(worstError(large, sum, direct, everything()), pixelTolerance);
}

TEST(TileSum, reusedObject_givesTheSameBits) {
  const Scene scene{48, 96, 3, {{20, 0.1}, {7, 0.4}}};
  const auto picture = [&](dvTileSum& sum) {
    std::vector<DirectTile> direct;
    addScene(scene, 5, sum, direct);
    Values target(3 * 88 * 88, 0.0F);
    for (int p = 0; p < 3; ++p)
      sum.addInto(p, everything(), 20, 1.0F, target.data() + (p * 88 + 20) * 88 + 20, 0, 88);
    return target;
  };
  dvTileSum fresh(48, 3);
  dvTileSum used(48, 3);
  std::vector<DirectTile> direct;
  addScene({48, 160, 3, {{30, 0.5}}}, 1, used, direct);
  const Values a = picture(fresh);
  const Values b = picture(used);
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(float)), 0);
}

/// The pictures of planes of which those of `zeros` hold nothing but zeros.
Values pictureWithout(const std::vector<int>& zeros, int planes) {
  const int side = 32;
  const dvKernelTable table = randomKernels(8, 1);
  Values values = sparsePlanes(side, planes, 0.3, 2);
  for (const int p : zeros)
    std::fill_n(values.begin() + p * side * side, side * side, 0.0F);
  dvTileSum sum(side, planes);
  sum.begin(48);
  const dvKernelSpectrum spectrum(table, 48, {8});
  sum.add(values.data(), spectrum);
  sum.finish();
  Values target(static_cast<std::size_t>(planes * 48 * 48), 0.0F);
  for (int p = 0; p < planes; ++p)
    sum.addInto(p, everything(), 8, 1.0F, target.data() + (p * 48 + 8) * 48 + 8, 0, 48);
  return target;
}

TEST(TileSum, zeroPairOrOddPlane_addsExactlyNothing) {
  const Values pair = pictureWithout({0, 1}, 5);
  EXPECT_TRUE(
      std::all_of(pair.begin(), pair.begin() + 2 * 48 * 48, [](float v) { return v == 0.0F; }));
  EXPECT_FALSE(
      std::all_of(pair.begin() + 4 * 48 * 48, pair.end(), [](float v) { return v == 0.0F; }));
  const Values odd = pictureWithout({4}, 5);
  EXPECT_TRUE(std::all_of(odd.begin() + 4 * 48 * 48, odd.end(), [](float v) { return v == 0.0F; }));
}

TEST(TileSum, nothingAdded_isNothing) {
  dvTileSum sum(16, 3);
  sum.begin(32);
  sum.finish();
  Values target(32 * 32, 7.0F);
  for (int p = 0; p < 3; ++p)
    sum.addInto(p, everything(), 8, 1.0F, target.data() + 8 * 32 + 8, 0, 32);
  EXPECT_TRUE(std::all_of(target.begin(), target.end(), [](float v) { return v == 7.0F; }));
}

TEST(TileSum, weightTogetherWithStrongColours_keepsItsOwnAccuracy) {
  // The pair's error follows the stronger of the two; an odd plane stands alone.
  const int side = 32;
  const dvKernelTable table = randomKernels(8, 1);
  Values values = sparsePlanes(side, 3, 0.3, 2);
  for (int i = 0; i < 2 * side * side; ++i)
    values[static_cast<std::size_t>(i)] *= 1e6F;
  std::vector<DirectTile> direct(3, {side, 8});
  dvTileSum sum(side, 3);
  sum.begin(48);
  const dvKernelSpectrum spectrum(table, 48, {8});
  sum.add(values.data(), spectrum);
  sum.finish();
  direct[2].add(values.data() + 2 * side * side, table, 8);
  Values target(48 * 48, 0.0F);
  sum.addInto(2, everything(), 8, 1.0F, target.data() + 8 * 48 + 8, 0, 48);
  for (int y = -8; y < side + 8; ++y) {
    for (int x = -8; x < side + 8; ++x) {
      const float got = target.data()[(y + 8) * 48 + x + 8];
      EXPECT_NEAR(got, direct[2].at(x, y), pixelTolerance * direct[2].scale());
    }
  }
}

}  // namespace
}  // namespace drevin::test
