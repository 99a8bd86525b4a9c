#pragma once

/// A camera from the attributes of a picture's header.

#include <OpenEXR/ImfHeader.h>

#include <map>
#include <optional>
#include <string>

namespace drevintool {

/// A value of the camera, and what it was made of.
struct CameraFinding {
  double value = 0.0;
  std::string from;  ///< the attribute, the file or the option
};

/// What the size of the picture says about its film back.
struct PictureSize {
  int width = 0;
  int height = 0;
  double pixelAspect = 1.0;
};

/// The camera's values by the names of cameraKeys, as far as the header has them.
///
/// Understood are the standard attributes `effectiveFocalLength`, `nominalFocalLength` and
/// `pinholeFocalLength` (mm), `aperture` (f-number), `focus` (m, divided by `metresPerUnit`),
/// `sensorOverallDimensions` (mm) and `sensorPhotositePitch` (micrometres, times the picture's
/// pixels), and the names that renderers give: focalLength, fStop, fNumber, focusDistance,
/// focalDistance, targetDistance (scene units), horizontalAperture, filmWidth, sensorWidth (mm),
/// horizontalFilmAperture (inches) and their like, in any letter case, with or without separators,
/// with `camera`, `cam` or `lens` before them, or behind a folder ("exr/camera/focal_length").
/// Values may be numbers or texts of numbers ("35 mm", "f/2.8"); those that are not above 0 are
/// left out. A focal length below 2 mm beside a field of view is one for a film of width 1, and is
/// left out for addFocalLength.
std::map<std::string, CameraFinding> findHeaderCamera(const Imf::Header& header,
                                                      const PictureSize& size,
                                                      double metresPerUnit);

/// The horizontal field of view in degrees, above 0 and below 180 (`fov`, `fieldOfView`, `hfov`,
/// `horizontalFov` and their like), or nothing.
std::optional<CameraFinding> findFieldOfView(const Imf::Header& header);

/// "fov 50 degrees".
std::string fieldOfViewText(const CameraFinding& view);

/// Gives a camera that has a film back's width w and no focal length that of the header's field of
/// view a: w / (2 tan(a / 2)).
void addFocalLength(const Imf::Header& header, std::map<std::string, CameraFinding>& findings);

/// Gives a film back that has a width and no height the shape of the picture.
void addPictureShape(const PictureSize& size, std::map<std::string, CameraFinding>& findings);

}  // namespace drevintool
