#pragma once

/// The glass wall of a bus stop behind the subject: a tinted pane full of rain in a lit frame. It
/// is in the deep picture only, since a flat one has a single depth for what is on the glass and
/// what shines through it.

#include <functional>
#include <optional>

#include "demo/DemoHit.h"

namespace drevintool {

/// The pane's depth, m.
constexpr double kDemoPaneDepth = 5.6;

/// What a ray meets on the pane.
struct DemoPaneHit {
  double alpha = 0.0;  ///< share of the light from behind that it takes, in (0, 1)
  DemoVector light;    ///< that it sends toward the camera, alpha included
};

/// The scene behind the pane in a direction; drops show it upside down.
using DemoBackdrop = std::function<DemoVector(const DemoVector& along)>;

/// Whether rays within `margin` (a slope) of this one may meet the shelter.
bool nearShelter(const DemoRay& ray, double margin);

/// Posts, rails and lamps of the frame along a ray from in front of it; t infinite if missed.
DemoHit traceShelterFrame(const DemoRay& ray);

/// The glass along a ray from in front of it.
std::optional<DemoPaneHit> traceShelterPane(const DemoRay& ray, const DemoBackdrop& backdrop);

}  // namespace drevintool
