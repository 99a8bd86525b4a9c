#include "defocus/BlurRecords.h"

#include <gtest/gtest.h>

#include <cmath>

#include "defocus/CorrectiveSlices.h"

namespace drevin {
namespace {

/// Two slices around a focal plane at 10, full blur of 8 px two units away.
dvBlurSettings twoSlices(dvFocusOutput output) {
  dvBlurSettings settings;
  settings.lens.focalPlane = 10.0F;
  settings.lens.focusNear = 8.0F;
  settings.lens.focusFar = 12.0F;
  settings.lens.invHalfFocusRegion = 0.5F;
  settings.lens.multiplier = 8.0F;
  settings.slices = 2;
  settings.sliceStarts = {0.0F, 10.0F};
  settings.focusOutput = output;
  return settings;
}

TEST(BlurRecord, depthBehindFocus_hasItsBlurAndSlice) {
  const dvBlurRecord record = blurRecord(11.0F, 1.0F, twoSlices(dvFocusOutput::Both));
  EXPECT_EQ(record.coc, 4.0F);
  EXPECT_EQ(record.slice, 1U);
  EXPECT_TRUE(record.splatted);
}

TEST(BlurRecord, defocusMatte_scalesTheBlurDownToOnePixel) {
  EXPECT_EQ(blurRecord(11.0F, 0.5F, twoSlices(dvFocusOutput::Both)).coc, 2.0F);
  EXPECT_EQ(blurRecord(11.0F, 0.0F, twoSlices(dvFocusOutput::Both)).coc, 1.0F);
}

TEST(BlurRecord, focusOutputFront_splatsOnlyTheFront) {
  EXPECT_TRUE(blurRecord(9.0F, 1.0F, twoSlices(dvFocusOutput::Front)).splatted);
  EXPECT_FALSE(blurRecord(10.0F, 1.0F, twoSlices(dvFocusOutput::Front)).splatted);
  EXPECT_FALSE(blurRecord(11.0F, 1.0F, twoSlices(dvFocusOutput::Front)).splatted);
}

TEST(BlurRecord, focusOutputBack_splatsAllButTheFront) {
  EXPECT_FALSE(blurRecord(9.0F, 1.0F, twoSlices(dvFocusOutput::Back)).splatted);
  EXPECT_TRUE(blurRecord(10.0F, 1.0F, twoSlices(dvFocusOutput::Back)).splatted);
}

TEST(BlurRecord, unorderedDepth_countsAsBack) {
  EXPECT_TRUE(showsRegion(dvFocusOutput::Both, dvFocusRegion::Unordered));
  EXPECT_TRUE(showsRegion(dvFocusOutput::Back, dvFocusRegion::Unordered));
  EXPECT_FALSE(showsRegion(dvFocusOutput::Front, dvFocusRegion::Unordered));
}

TEST(BlurRecord, negativeDepthOfAThinLens_isInNoSlice) {
  dvBlurSettings settings = twoSlices(dvFocusOutput::Both);
  settings.lens.realWorldLens = true;
  EXPECT_EQ(blurRecord(-1.0F, 1.0F, settings).slice, dvNoSlice);
}

TEST(BlurRecord, nanDepth_isInfinitelyFarAndInTheLastSlice) {
  const dvBlurRecord record = blurRecord(std::nanf(""), 1.0F, twoSlices(dvFocusOutput::Both));
  EXPECT_EQ(record.coc, 8.0F);
  EXPECT_EQ(record.slice, 1U);
}

}  // namespace
}  // namespace drevin
