#include "MediaMix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using embedded::MediaMix;
using embedded::opticalDepth;
using embedded::unhiddenFactor;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// A mix of media of one colour each.
class OneColour {
 public:
  OneColour& add(double alpha, double colour, double share = 1.0) {
    const double unhidden = colour * unhiddenFactor(alpha);
    mix_.add(opticalDepth(alpha), &unhidden, share);
    return *this;
  }
  double alpha() const { return mix_.alpha(); }
  double colour() const {
    std::vector<double> colours;
    mix_.appendColours(colours);
    return colours.at(0);
  }
  void clear() { mix_.clear(); }

 private:
  MediaMix mix_{1};
};

}  // namespace

TEST(OpticalDepth, ends_are0AndInfinite) {
  EXPECT_EQ(opticalDepth(0.0), 0.0);
  EXPECT_EQ(opticalDepth(1.0), infinite);
  EXPECT_NEAR(opticalDepth(1.0 - std::exp(-2.0)), 2.0, 1e-14);
}

TEST(OpticalDepth, tinyAlpha_isItself) {
  EXPECT_EQ(opticalDepth(1e-30), 1e-30);
}

TEST(UnhiddenFactor, ends_are1) {
  EXPECT_EQ(unhiddenFactor(0.0), 1.0);
  EXPECT_EQ(unhiddenFactor(1.0), 1.0);
  EXPECT_EQ(unhiddenFactor(1e-30), 1.0);
  EXPECT_NEAR(unhiddenFactor(0.5), 2.0 * std::log(2.0), 1e-15);
}

TEST(MediaMix, ofNothing_isTransparent) {
  const OneColour mix;
  EXPECT_EQ(mix.alpha(), 0.0);
  EXPECT_EQ(mix.colour(), 0.0);
}

TEST(MediaMix, ofOneMedium_isThatMedium) {
  for (const double alpha : {0.0, 1e-30, 1e-9, 0.3, 1.0 - 1e-9, 1.0}) {
    OneColour mix;
    mix.add(alpha, 3.0);
    EXPECT_NEAR(mix.alpha(), alpha, 1e-15 * alpha) << alpha;
    EXPECT_NEAR(mix.colour(), 3.0, 1e-14) << alpha;
  }
}

TEST(MediaMix, shares_makeUpTheMedium) {
  OneColour mix;
  mix.add(0.7, 3.0, 0.125).add(0.7, 3.0, 0.5).add(0.7, 3.0, 0.375);
  EXPECT_NEAR(mix.alpha(), 0.7, 1e-15);
  EXPECT_NEAR(mix.colour(), 3.0, 1e-14);
}

TEST(MediaMix, order_doesNotMatter) {
  OneColour mix;
  OneColour reversed;
  mix.add(0.7, 3.0).add(1.0, 5.0).add(0.0, 2.0);
  reversed.add(0.0, 2.0).add(1.0, 5.0).add(0.7, 3.0);
  EXPECT_EQ(mix.alpha(), reversed.alpha());
  EXPECT_EQ(mix.colour(), reversed.colour());
  EXPECT_EQ(mix.colour(), 5.0) << "the opaque one hides the others";
}

TEST(MediaMix, ofOpaqueMedia_isTheirMeanWhateverTheirShares) {
  OneColour mix;
  mix.add(1.0, 3.0, 0.0).add(0.5, 100.0).add(1.0, 6.0, 0.25);
  EXPECT_EQ(mix.alpha(), 1.0);
  EXPECT_EQ(mix.colour(), 4.5);
}

TEST(MediaMix, noShare_addsNothing) {
  OneColour mix;
  mix.add(0.5, infinite, 0.0).add(0.25, 1.0);
  EXPECT_NEAR(mix.alpha(), 0.25, 1e-15);
  EXPECT_NEAR(mix.colour(), 1.0, 1e-15);
}

TEST(MediaMix, clear_forgetsOpaqueMediaToo) {
  OneColour mix;
  mix.add(1.0, 3.0);
  mix.clear();
  mix.add(0.5, 2.0);
  EXPECT_NEAR(mix.alpha(), 0.5, 1e-15);
  EXPECT_NEAR(mix.colour(), 2.0, 1e-15);
}
