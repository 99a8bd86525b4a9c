#include "defocus/DepthView.h"

namespace drevin {

void depthViewRow(const float* depth, int channel, int x, int r, const dvLens& lens,
                  const dvPassSettings& settings, float* out) {
  for (int i = x; i < r; ++i) {
    const dvBlur blur = depthToBlur(depth[i], lens);
    getPassValue(blur.coc, blur.region, channel, settings, &out[i]);
  }
}

}  // namespace drevin
