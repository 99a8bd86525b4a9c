#include "defocus/BlurRecords.h"

#include "defocus/CorrectiveSlices.h"

namespace drevin {

bool showsRegion(dvFocusOutput output, dvFocusRegion region) {
  if (output == dvFocusOutput::Both) return true;
  const bool front = region == dvFocusRegion::Front;
  return front == (output == dvFocusOutput::Front);
}

dvBlurRecord blurRecord(float rawDepth, float defocusMatte, const dvBlurSettings& settings) {
  const dvBlur blur = depthToBlur(rawDepth, settings.lens);
  dvBlurRecord record;
  record.coc = splattedCoc(blur.coc, defocusMatte);
  record.splatted = showsRegion(settings.focusOutput, blur.region);
  record.slice = sliceIndex(blur.depth, settings.slices, settings.sliceStarts);
  return record;
}

}  // namespace drevin
