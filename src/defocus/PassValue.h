#pragma once

/// Red, green and blue of the depth visualizations.

#include "defocus/DepthToBlur.h"

namespace drevin {

/// What the node shows.
enum class dvOutputType { DefocusedImage, LensBloom, FocalDistance, FilterShape, FocusMatte };

struct dvPassSettings {
  dvOutputType outputType = dvOutputType::FocalDistance;
  bool normalize = true;  ///< divide the focal distances by kernelSize
  int kernelSize = 256;   ///< px
};

/// In-focus indicator: one minus a smoothstep of the blur, 1 at 0 px and 0 from half a pixel.
/// A NaN blur gives 0.
float inFocus(float coc);

/// Writes (or leaves) one channel of a visualization pixel; channel 1 is red, 2 green, 3 blue.
///
/// Focal distance: red inFocus, green the blur in front, blue the blur behind, both divided by
/// kernelSize when normalized; that division also applies to what `out` held for any other channel.
/// Focus matte: 1 in red, green or blue for unordered, front or back. Other outputs leave `out`.
void getPassValue(float coc, dvFocusRegion region, int channel, const dvPassSettings& settings,
                  float* out);

}  // namespace drevin
