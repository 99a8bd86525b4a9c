#pragma once

/// Mending depths that are no distances.

#include <cstddef>
#include <optional>
#include <vector>

#include "depth/BackgroundFinding.h"
#include "depth/DepthCodes.h"
#include "depth/DepthPlane.h"
#include "prepare/PictureFixes.h"

namespace drevintool {

/// The farthest of distances that come as raw samples.
class FarthestDepth {
 public:
  explicit FarthestDepth(const DepthCodes& codes) : codes_(codes) {}

  /// Codes for nothing do not count.
  void add(float raw);
  /// The raw sample, or nothing if there was none.
  std::optional<float> raw() const { return raw_; }

 private:
  DepthCodes codes_;
  std::optional<float> raw_;
};

/// Gives the mixed pixels of `plane` (see findMixedPixels) the depth of the side that they are
/// closer to, all from the depths as they were; the smaller of two that are equally close. Returns
/// how many there were. `values` has those of the plane on entry.
std::size_t fixEdges(const DepthPlane& plane, std::vector<float>& values);

/// The depth that a fix gives to background, as the channel holds it: its own, or that of the
/// farthest of `values` that is none. Nothing if all are background.
std::optional<float> backgroundDepth(const BackgroundFix& fix, const BackgroundFinding& background,
                                     const std::vector<float>& values);

/// Gives all background that depth. Returns how many there were.
std::size_t fixBackground(const BackgroundFinding& background, float depth,
                          std::vector<float>& values);

}  // namespace drevintool
