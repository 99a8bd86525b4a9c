#include "demo/DemoMattes.h"

#include "demo/DemoNeon.h"

namespace drevintool {
namespace {

// The sign's own depth marks it out against what hangs in front of it.
double defocusMatte(const DemoVector& slope, double depth, const DemoCamera& camera) {
  const DemoVector& sign = kDemoNeonCentre;
  const double x = slope.x * sign.z - sign.x;
  const double y = slope.y * sign.z + camera.height - sign.y;
  const bool inSign = std::hypot(x, y) <= kDemoNeonRadius && std::abs(depth - sign.z) < 0.01;
  return inSign ? 0.0 : 1.0;
}

double chromaticMatte(double column, double row, const DemoPicture& scene) {
  const double x = column / scene.width * 2.0 - 1.0;
  const double y = row / scene.height * 2.0 - 1.0;
  return std::min((x * x + y * y) * 0.5, 1.0);
}

}  // namespace

DemoPicture makeDemoMattes(const DemoPicture& scene, const DemoCamera& camera) {
  DemoPicture mattes;
  mattes.width = scene.width;
  mattes.height = scene.height;
  const std::vector<float>& red = scene.planes.at("R");
  const std::vector<float>& green = scene.planes.at("G");
  const std::vector<float>& blue = scene.planes.at("B");
  const std::vector<float>& depth = scene.planes.at("Z");
  for (int row = 0; row < scene.height; ++row) {
    for (int column = 0; column < scene.width; ++column) {
      const std::size_t i = mattes.planes["matte.bloom"].size();
      const DemoRay ray = camera.ray(column + 0.5, row + 0.5, scene.width, scene.height);
      const double bright = luminance({red[i], green[i], blue[i]});
      const double defocus = defocusMatte(ray.along, depth[i], camera);
      const double chromatic = chromaticMatte(column + 0.5, row + 0.5, scene);
      mattes.planes["matte.defocus"].push_back(static_cast<float>(defocus));
      mattes.planes["matte.bloom"].push_back(static_cast<float>(smoothStep(0.5, 1.0, bright)));
      mattes.planes["matte.chromatic"].push_back(static_cast<float>(chromatic));
    }
  }
  return mattes;
}

}  // namespace drevintool
