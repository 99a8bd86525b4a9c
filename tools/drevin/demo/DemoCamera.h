#pragma once

/// The camera of the demo scene: where it stands, what it sees, and its lens as text.

#include <string>

#include "demo/DemoVector.h"

namespace drevintool {

/// Looks along z from (0, height, 0). The lens is shifted upward instead of the camera tilted, so
/// that upright lines stay upright and depth is plain z.
struct DemoCamera {
  double focalLength = 85.0;         ///< mm
  double fStop = 1.2;                ///< focal length over the entrance pupil's diameter
  double focalPlane = 3.85;          ///< m
  double horizontalAperture = 36.0;  ///< mm
  double verticalAperture = 20.25;   ///< mm
  double height = 1.5;               ///< m above the road
  double rise = 0.021;               ///< slope at the picture's centre

  /// Half the picture's width at a depth of 1.
  double halfWidth() const { return 0.5 * horizontalAperture / focalLength; }
  /// The ray through a place of a picture, in pixels from its top left corner; its `along` has
  /// z = 1, so that places on it are told by their depth.
  DemoRay ray(double column, double row, int width, int height) const;
};

/// A place in the picture, in pixels from the top left corner.
struct DemoPlace {
  double column = 0.0;
  double row = 0.0;
};

/// Where a point with z > 0 appears.
DemoPlace project(const DemoCamera& camera, const DemoVector& point, int width, int height);

/// "focalLength=85,fStop=1.2,...", as the option --camera takes it.
std::string cameraText(const DemoCamera& camera);

}  // namespace drevintool
