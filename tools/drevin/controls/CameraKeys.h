#pragma once

/// The values of a camera that the node reads.

#include <array>
#include <string>

#include "EmbeddedHost/CameraInput.h"

namespace drevintool {

struct CameraKey {
  const char* name;
  const char* control;  ///< of the node, that holds the same value where there is no camera
  const char* unit;     ///< empty: none
  double embedded::CameraValues::*value;
};

/// focalLength, fStop, focalPlane, horizontalAperture and verticalAperture.
const std::array<CameraKey, 5>& cameraKeys();

/// The key of that name, or null.
const CameraKey* findCameraKey(const std::string& name);

/// "no key 'name'" with the nearest one or the list of them.
std::string unknownCameraKey(const std::string& name);

}  // namespace drevintool
