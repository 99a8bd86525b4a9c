#pragma once

/// How large a render's blur will be, asked of the node itself.

#include "depth/DepthPlane.h"
#include "inspect/AskedNode.h"
#include "picture/Picture.h"

namespace drevintool {

/// The largest blurs of both sides of the focal plane, as diameters in pixels; 0 where there is
/// nothing on that side.
struct PredictedBlur {
  float front = 0.0F;
  float back = 0.0F;
  double most = 0.0;  ///< the control max_kernelsize, which limits both

  float largest() const;
  /// The largest of the kernels that are made, px: the largest blur rounded up, or the limit.
  int largestKernel() const;
};

/// Renders the node's view of its focal distances over the depths, which shows each pixel's blur
/// without a limit, and takes the largest. Infinitely far depths do not count, for the node gives
/// them the largest kernel that the others need. `picture` has the format; of a deep picture
/// `depth` has those of its samples, which are distances in any style. Throws ToolError
/// (RenderFailed) if the node refuses its controls.
PredictedBlur predictBlur(const AskedRender& asked, const Picture& picture, const DepthPlane& depth,
                          bool deep);

}  // namespace drevintool
