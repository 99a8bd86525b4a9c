#pragma once

/// A camera from a text of the command line.

#include <string>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/Node.h"

namespace drevintool {

/// The values of "focalLength=50,fStop=1.4,...": focalLength (mm), fStop, focalPlane (scene units),
/// horizontalAperture, verticalAperture (mm). Those left out are the node's controls focalLength,
/// fStop, focalPlane, apertureWidth and apertureHeight as they stand. Throws ToolError (Usage) for
/// an unknown key (naming the nearest), a key given twice, or a value that is not a number.
embedded::CameraValues parseCamera(const std::string& text, const Node& node);

/// Gives the node's own lens controls those values, with a film format of the artist's own.
void setLensControls(Node& node, const embedded::CameraValues& values);

/// Puts the camera on the node's Camera input. Throws ToolError (RenderFailed) if it is refused.
void connectCamera(Node& node, embedded::CameraInput& camera);

}  // namespace drevintool
