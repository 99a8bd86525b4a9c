#include "kernel/ApertureShape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "support/LiteralAperture.h"

namespace drevin {
namespace {

dvApertureShape disc(float softness) {
  dvApertureShape shape;
  shape.type = dvKernelType::Circular;
  shape.softness = softness;
  return shape;
}

dvApertureShape blades(int sides, float curvature, float rotation) {
  dvApertureShape shape = disc(1.0F);
  shape.type = dvKernelType::ApertureBlades;
  shape.numSides = sides;
  shape.bladeCurvature = curvature;
  shape.rotation = rotation;
  return shape;
}

std::vector<float> draw(const dvApertureShape& shape, int side) {
  const float half = 0.5F * static_cast<float>(side);
  std::vector<float> image;
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      image.push_back(
          apertureValue(shape, softnessGain(shape.softness), half, half * half, column, row));
    }
  }
  return image;
}

float at(const std::vector<float>& image, int side, int column, int row) {
  return image.data()[row * side + column];
}

// 1 - r^2 / h^2 at a pixel centre.
double discTerm(int side, int column, int row) {
  const double half = 0.5 * side;
  return 1 - (std::pow(column + 0.5 - half, 2) + std::pow(row + 0.5 - half, 2)) / (half * half);
}

void expectSame(const std::vector<float>& a, const std::vector<float>& b, float tolerance) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    ASSERT_NEAR(a[i], b[i], tolerance) << "pixel " << i;
  }
}

TEST(SoftnessGain, atOrAboveTheHardLimit_isTheReciprocal) {
  EXPECT_EQ(softnessGain(0.001F), 1.0F / 0.001F);
  EXPECT_EQ(softnessGain(0.5F), 2.0F);
  EXPECT_EQ(softnessGain(4.0F), 0.25F);
}

TEST(SoftnessGain, belowTheHardLimit_isTheFloatJustBelow1000) {
  for (const float softness : {0.0F, 0.000999F, -1.0F, -std::numeric_limits<float>::infinity()}) {
    const float gain = softnessGain(softness);
    std::uint32_t bits = 0;
    std::memcpy(&bits, &gain, sizeof(bits));
    EXPECT_EQ(bits, 0x4479FFFFU);
  }
}

TEST(CircularAperture, softnessOne_isOneMinusSquaredRadiusInsideAndZeroOutside) {
  for (const int side : {1, 2, 31, 64}) {
    const std::vector<float> image = draw(disc(1.0F), side);
    for (int i = 0; i < side * side; ++i) {
      const double expected = std::max(0.0, discTerm(side, i % side, i / side));
      ASSERT_NEAR(image[static_cast<std::size_t>(i)], expected, 1e-6) << side << " " << i;
    }
  }
}

TEST(CircularAperture, softnessZero_isHardDiscWithFractionalEdge) {
  const int side = 255;
  const std::vector<float> image = draw(disc(0.0F), side);
  int fractional = 0;
  for (int i = 0; i < side * side; ++i) {
    const double circle = discTerm(side, i % side, i / side);
    const float value = image[static_cast<std::size_t>(i)];
    if (circle > 0.00101) {
      ASSERT_EQ(value, 1.0F);
    } else if (circle < -1e-6) {
      ASSERT_EQ(value, 0.0F);
    } else if (circle > 1e-5 && circle < 0.00099) {
      ASSERT_NEAR(value, circle * 1000, 1e-3);
      ++fractional;
    }
  }
  EXPECT_GT(fractional, 0);
}

TEST(CircularAperture, aspectTwo_halvesTheHorizontalExtent) {
  dvApertureShape shape = disc(0.0F);
  shape.aspectRatio = 2.0F;
  const int side = 64;
  const std::vector<float> image = draw(shape, side);
  for (int i = 0; i < side; ++i) {
    EXPECT_EQ(at(image, side, i, side / 2) > 0, i >= 16 && i < 48) << i;
    EXPECT_GT(at(image, side, side / 2, i), 0) << i;
  }
}

TEST(CircularAperture, aspectOneHalf_halvesTheVerticalExtent) {
  dvApertureShape shape = disc(0.0F);
  shape.aspectRatio = 0.5F;
  const int side = 64;
  const std::vector<float> image = draw(shape, side);
  for (int i = 0; i < side; ++i) {
    EXPECT_EQ(at(image, side, side / 2, i) > 0, i >= 16 && i < 48) << i;
    EXPECT_GT(at(image, side, i, side / 2), 0) << i;
  }
}

TEST(CircularAperture, aspectAndItsReciprocal_areTransposed) {
  dvApertureShape wide = disc(0.4F);
  dvApertureShape high = disc(0.4F);
  wide.aspectRatio = 0.25F;
  high.aspectRatio = 4.0F;
  const int side = 33;
  const std::vector<float> a = draw(wide, side);
  const std::vector<float> b = draw(high, side);
  for (int i = 0; i < side * side; ++i) {
    ASSERT_EQ(at(a, side, i % side, i / side), at(b, side, i / side, i % side));
  }
}

TEST(CircularAperture, anyPixel_equalsItsMirrorImages) {
  dvApertureShape shape = disc(0.3F);
  shape.aspectRatio = 1.7F;
  shape.sphericalAberration = 0.4F;
  for (const int side : {40, 41}) {
    const std::vector<float> image = draw(shape, side);
    for (int i = 0; i < side * side; ++i) {
      const int column = i % side;
      const int row = i / side;
      ASSERT_EQ(at(image, side, column, row), at(image, side, side - 1 - column, row));
      ASSERT_EQ(at(image, side, column, row), at(image, side, column, side - 1 - row));
    }
  }
}

TEST(BladedAperture, curvatureOne_equalsCircular) {
  for (const float softness : {0.0F, 0.1F, 1.0F}) {
    dvApertureShape bladed = blades(5, 1.0F, 0.3F);
    dvApertureShape round = disc(softness);
    bladed.softness = softness;
    bladed.sphericalAberration = round.sphericalAberration = -0.3F;
    EXPECT_EQ(draw(bladed, 65), draw(round, 65));
  }
}

TEST(BladedAperture, rotationOne_equalsRotationZero) {
  expectSame(draw(blades(6, 0.0F, 1.0F), 65), draw(blades(6, 0.0F, 0.0F), 65), 2e-6F);
}

TEST(BladedAperture, rotationByOneBlade_rotatesThePatternOntoItself) {
  for (const int sides : {3, 5, 6, 16}) {
    const float blade = 1.0F / static_cast<float>(sides);
    expectSame(draw(blades(sides, 0.0F, blade), 65), draw(blades(sides, 0.0F, 0.0F), 65), 2e-6F);
    expectSame(draw(blades(sides, 0.2F, 0.3F + blade), 65), draw(blades(sides, 0.2F, 0.3F), 65),
               2e-6F);
  }
}

TEST(BladedAperture, fourBlades_areDeepestAtTheirMiddles) {
  const int side = 65;
  const std::vector<float> image = draw(blades(4, 0.0F, 0.0F), side);
  const double straight = discTerm(side, 52, 32);
  const double diagonal = discTerm(side, 46, 46);
  EXPECT_NEAR(at(image, side, 52, 32), straight, 1e-5);         // neighbours meet: full radius
  EXPECT_NEAR(at(image, side, 46, 46), diagonal - 0.25, 1e-5);  // bowed by 1 / 4
}

TEST(BladedAperture, rotationOfFourBladesByHalfABlade_movesTheBow) {
  const int side = 65;
  const std::vector<float> image = draw(blades(4, 0.0F, 0.125F), side);
  EXPECT_NEAR(at(image, side, 52, 32), discTerm(side, 52, 32) - 0.25, 1e-5);
  EXPECT_NEAR(at(image, side, 46, 46), discTerm(side, 46, 46), 1e-5);
}

TEST(SphericalAberration, oneWithHardEdge_hollowsTheCentreAndLeavesTheRim) {
  dvApertureShape shape = disc(0.0F);
  shape.sphericalAberration = 1.0F;
  const int side = 255;
  const std::vector<float> image = draw(shape, side);
  EXPECT_EQ(at(image, side, 127, 127), 0.0F);
  EXPECT_GT(at(image, side, 253, 127), 0.97F);
}

TEST(SphericalAberration, negative_darkensTowardTheRim) {
  dvApertureShape shape = disc(0.0F);
  shape.sphericalAberration = -1.0F;
  const int side = 255;
  const std::vector<float> image = draw(shape, side);
  EXPECT_EQ(at(image, side, 127, 127), 1.0F);
  EXPECT_LT(at(image, side, 253, 127), 0.03F);
  EXPECT_GT(at(image, side, 190, 127), at(image, side, 220, 127));
}

TEST(SphericalAberration, ofBlades_usesTheDiscTerm) {
  dvApertureShape plain = blades(4, 0.0F, 0.0F);
  dvApertureShape aberrated = plain;
  aberrated.sphericalAberration = 0.5F;
  const int side = 65;
  const double expected =
      static_cast<double>(at(draw(plain, side), side, 40, 40)) - 0.5 * discTerm(side, 40, 40);
  EXPECT_NEAR(at(draw(aberrated, side), side, 40, 40), expected, 1e-6);
}

TEST(ApertureShape, randomSettings_agreeWithDoublePrecision) {
  std::mt19937 generator(2);
  std::uniform_real_distribution<float> unit(0.0F, 1.0F);
  for (int i = 0; i < 300; ++i) {
    dvApertureShape shape = blades(3 + i % 14, unit(generator), unit(generator));
    shape.type = i % 3 == 0 ? dvKernelType::Circular : dvKernelType::ApertureBlades;
    shape.aspectRatio = 0.1F + 1.9F * unit(generator);
    shape.softness = i % 5 == 0 ? 0.0F : 2.0F * unit(generator);
    shape.sphericalAberration = 2.0F * unit(generator) - 1.0F;
    const int side = 1 + i % 97;
    const double gain = static_cast<double>(softnessGain(shape.softness));
    const std::vector<float> image = draw(shape, side);
    for (int p = 0; p < side * side; ++p) {
      // The soft edge multiplies the rounding of the shape term.
      ASSERT_NEAR(image[static_cast<std::size_t>(p)],
                  test::literalAperture(shape, gain, side, p % side, p / side), 2e-6 * (1 + gain))
          << "case " << i << " pixel " << p;
    }
  }
}

// Each setting in turn at the values where arithmetic breaks.
std::vector<dvApertureShape> brokenShapes() {
  const float inf = std::numeric_limits<float>::infinity();
  std::vector<dvApertureShape> shapes;
  for (const float value : {std::nanf(""), inf, -inf, 0.0F, -3.0F, 1e30F, -1e30F, 0x1p-140F}) {
    for (float dvApertureShape::*field :
         {&dvApertureShape::aspectRatio, &dvApertureShape::softness,
          &dvApertureShape::bladeCurvature, &dvApertureShape::rotation}) {
      shapes.push_back(blades(6, 0.5F, 0.1F));
      shapes.back().*field = value;
    }
  }
  for (const int sides : {0, -1, 1, std::numeric_limits<int>::min()}) {
    shapes.push_back(blades(sides, 0.5F, 0.1F));
  }
  return shapes;
}

TEST(ApertureShape, anyValueOfASetting_givesTransmissionsFromZeroToOne) {
  for (dvApertureShape shape : brokenShapes()) {
    for (const dvKernelType type : {dvKernelType::Circular, dvKernelType::ApertureBlades}) {
      shape.type = type;
      for (const float value : draw(shape, 17)) {
        ASSERT_GE(value, 0.0F);
        ASSERT_LE(value, 1.0F);
      }
    }
  }
}

TEST(ApertureShape, softnessNaN_isAHardEdgeThatFillsTheSquare) {
  for (const float value : draw(disc(std::nanf("")), 9)) {
    EXPECT_EQ(value, 1.0F);
  }
}

TEST(ApertureShape, infiniteAberration_isZeroOrNaN) {
  for (const float amount : {HUGE_VALF, -HUGE_VALF}) {
    dvApertureShape shape = disc(1.0F);
    shape.sphericalAberration = amount;
    for (const float value : draw(shape, 9)) {
      EXPECT_TRUE(value == 0.0F || std::isnan(value)) << value;
    }
  }
}

TEST(ApertureShape, aberrationNaN_countsAsNone) {
  dvApertureShape shape = disc(1.0F);
  shape.sphericalAberration = std::nanf("");
  EXPECT_EQ(draw(shape, 9), draw(disc(1.0F), 9));
}

}  // namespace
}  // namespace drevin
