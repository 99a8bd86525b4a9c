#pragma once

/// The small bright sources of the demo scene, before and behind the subject.

#include <vector>

#include "demo/DemoVector.h"

namespace drevintool {

/// A luminous ball.
struct DemoLight {
  DemoVector position;  ///< m
  double radius = 0.0;  ///< m
  DemoVector radiance;  ///< linear, 1 is a white wall in daylight
};

/// Street lamps, car and traffic lights, strings of bulbs over the street and one close to the
/// camera; the same list every time.
std::vector<DemoLight> demoLights();

/// The points by which the wire of the close string runs, from bulb to bulb.
std::vector<DemoVector> demoNearWire();

/// Light that the wet air around the sources scatters into the line of sight of slopes x and y that
/// ends at `depth`.
DemoVector demoGlow(const std::vector<DemoLight>& lights, double cameraHeight, double slopeX,
                    double slopeY, double depth);

}  // namespace drevintool
