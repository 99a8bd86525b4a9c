#include "engine/Repair.h"

#include <gtest/gtest.h>

#include "engine/RowScene.h"

namespace drevin::test {
namespace {

constexpr int count = 8;

/// A stretch of one channel that is 1 everywhere and covered, beside transforms of some rounding.
class Stretch {
 public:
  explicit Stretch(double squares = 0.0) {
    if (squares > 0.0) rounding_.add(0, box_, squares);
  }
  Stretch& addToWeight(double squares) {
    rounding_.add(1, box_, squares);
    return *this;
  }
  bool inDoubt() {
    return isInDoubt({colour.data()}, coverage.data(), {0, 0, count, 0, nullptr}, rounding_);
  }

  /// As if it were the last columns of a row.
  bool inDoubt(const std::vector<std::uint8_t>& colourReached,
               const std::vector<std::uint8_t>& covered) {
    dvReachedColumns reached;
    for (const auto* columns : {&colourReached, &covered}) {
      reached.emplace_back(3, 1);
      reached.back().insert(reached.back().end(), columns->begin(), columns->end());
    }
    return isInDoubt({colour.data()}, coverage.data(), {0, 0, count, 3, &reached}, rounding_);
  }

  std::vector<float> colour = std::vector<float>(count, 1.0F);
  std::vector<double> coverage = std::vector<double>(count, 1.0);

 private:
  dvFrameBox box_{0, 0, dvRoundingCell, dvRoundingCell};
  dvSerial serial_;
  dvTransformRounding rounding_{box_, 2, dvKernelTable(kernelBank(KernelKind::Disc, 2), 1),
                                serial_};
};

TEST(RepairDoubt, coveredWithoutRounding_isNone) {
  EXPECT_FALSE(Stretch().inDoubt());
}

TEST(RepairDoubt, onePixelOfLittleCoverage_isEnough) {
  for (const double coverage : {0.0, 0.009, -1.0}) {
    Stretch stretch;
    stretch.coverage[5] = coverage;
    EXPECT_TRUE(stretch.inDoubt()) << coverage;
  }
  Stretch stretch;
  stretch.coverage[5] = 0.011;
  EXPECT_FALSE(stretch.inDoubt());
}

TEST(RepairDoubt, dimPixelBesideBrightOnes_isEnough) {
  // Off by 2e-7 * 100 = 2e-5, which is within 2.2e-5 of 1.
  Stretch stretch(1e4);
  EXPECT_FALSE(stretch.inDoubt());
  stretch.colour[2] = -0.5F;
  EXPECT_TRUE(stretch.inDoubt());
}

TEST(RepairDoubt, roundingOfTheWeight_countsByTheColour) {
  Stretch within(0.0);
  EXPECT_FALSE(within.addToWeight(1e4).inDoubt());
  Stretch beyond(0.0);
  EXPECT_TRUE(beyond.addToWeight(4e4).inDoubt());
}

TEST(RepairDoubt, colourThatNothingReaches_isNone) {
  const std::vector<std::uint8_t> all(count, 1);
  const std::vector<std::uint8_t> butTwo = {1, 1, 0, 1, 1, 1, 1, 0};
  Stretch stretch(1e4);
  stretch.colour[2] = 0.0F;
  stretch.colour[7] = 0.0F;
  EXPECT_TRUE(stretch.inDoubt(all, all));
  EXPECT_FALSE(stretch.inDoubt(butTwo, all));
  stretch.colour[6] = 0.0F;
  EXPECT_TRUE(stretch.inDoubt(butTwo, all));
}

TEST(RepairDoubt, columnsThatNothingCovers_areNone) {
  const std::vector<std::uint8_t> all(count, 1);
  const std::vector<std::uint8_t> butFirst = {0, 1, 1, 1, 1, 1, 1, 1};
  Stretch stretch;
  stretch.coverage[0] = 0.0;
  EXPECT_TRUE(stretch.inDoubt(all, all));
  EXPECT_FALSE(stretch.inDoubt(all, butFirst));
  stretch.coverage[1] = 0.001;
  EXPECT_TRUE(stretch.inDoubt(all, butFirst));
}

}  // namespace
}  // namespace drevin::test
