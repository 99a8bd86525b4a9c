#include "demo/DemoCamera.h"

#include <sstream>

namespace drevintool {

DemoRay DemoCamera::ray(double column, double row, int width, int pictureHeight) const {
  const double pixel = 2.0 * halfWidth() / width;
  return {{0.0, height, 0.0},
          {(column - 0.5 * width) * pixel, rise - (row - 0.5 * pictureHeight) * pixel, 1.0}};
}

DemoPlace project(const DemoCamera& camera, const DemoVector& point, int width, int height) {
  const double pixel = 2.0 * camera.halfWidth() / width;
  return {0.5 * width + point.x / point.z / pixel,
          0.5 * height + (camera.rise - (point.y - camera.height) / point.z) / pixel};
}

std::string cameraText(const DemoCamera& camera) {
  std::ostringstream text;
  text << "focalLength=" << camera.focalLength << ",fStop=" << camera.fStop
       << ",focalPlane=" << camera.focalPlane << ",horizontalAperture=" << camera.horizontalAperture
       << ",verticalAperture=" << camera.verticalAperture;
  return text.str();
}

}  // namespace drevintool
