#pragma once

/// How large a render's blur will be, asked of the node itself.

#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "controls/ControlChanges.h"
#include "depth/DepthPlane.h"
#include "picture/Picture.h"

namespace drevintool {

/// The controls of a render that is asked about.
struct AskedRender {
  const DD::Image::Op::Description& description;
  const ControlChanges& changes;
  std::string camera;  ///< as --camera takes it; empty: none
  std::optional<int> frame;
};

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

/// A node with those controls and that camera, its channels picked from `picture`. What it reads
/// must outlive it.
class AskedNode {
 public:
  /// Throws ToolError as a render does.
  AskedNode(const AskedRender& asked, const Picture& picture, embedded::Image image);

  Node& node() { return node_; }

 private:
  embedded::ImageInput input_;
  std::optional<embedded::CameraInput> camera_;
  Node node_;
};

/// Lets the node do without an aperture image, which nobody has given to it.
void useCircularAperture(Node& node);

/// Renders the node's view of its focal distances over the depths, which shows each pixel's blur
/// without a limit, and takes the largest. Infinitely far depths do not count, for the node gives
/// them the largest kernel that the others need. `picture` has the format; of a deep picture
/// `depth` has those of its samples, which are distances in any style. Throws ToolError
/// (RenderFailed) if the node refuses its controls.
PredictedBlur predictBlur(const AskedRender& asked, const Picture& picture, const DepthPlane& depth,
                          bool deep);

}  // namespace drevintool
