#pragma once

/// The depth visualizations of a deep picture: one channel of one pixel.

#include <vector>

#include "deep/DeepRecords.h"
#include "defocus/PassValue.h"

namespace drevin {

/// A sample of a pixel whose samples no longer overlap.
struct dvDepthSample {
  float depth = 0.0F;  ///< front or back, scene units
  float alpha = 0.0F;
};

/// Pass values of the samples composited front to back, the infinitely far background last:
///   w = (1 - A) * a,  out += v * w,  A += w   while 1 - A > 0;  then out += v_background * (1 - A)
///
/// `samples` come nearest first; v is getPassValue raised to 0 (a NaN is kept). Channel 1 is red,
/// 2 green, 3 blue. No matte and no least blur is applied.
float deepDepthValue(const std::vector<dvDepthSample>& samples, int channel,
                     const dvDeepSettings& settings, const dvPassSettings& pass);

}  // namespace drevin
