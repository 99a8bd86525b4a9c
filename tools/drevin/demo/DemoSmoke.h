#pragma once

/// Steam that rises from the road of the demo scene, as true volume samples. It is in the deep
/// picture only.

#include <vector>

#include "demo/DemoDeepPicture.h"
#include "demo/DemoLights.h"

namespace drevintool {

/// The depths between which there is steam, m.
constexpr double kDemoSmokeNear = 13.0;
constexpr double kDemoSmokeFar = 17.5;

/// What attenuates light at a place, 1/m; 0 away from the steam.
double demoSmokeDensity(const DemoVector& p);

/// The steam of the scene and the lights that shine into it.
class DemoSmoke {
 public:
  explicit DemoSmoke(const std::vector<DemoLight>& lights);

  /// Appends the steam that a camera ray meets between two depths, nearest first, in stretches that
  /// touch but never overlap, with
  ///   alpha = 1 - exp(-sigma * length)
  /// for the mean density sigma of the stretch and the ray's length in it. Stretches that take less
  /// than a thousandth of the light are left out.
  void append(const DemoRay& ray, double from, double to,
              std::vector<DemoDeepSample>& samples) const;

 private:
  DemoVector scattered(const DemoVector& p, const DemoVector& along) const;
  void appendStretch(const DemoRay& ray, double from, double to,
                     std::vector<DemoDeepSample>& samples) const;

  std::vector<DemoLight> lights_;
};

}  // namespace drevintool
