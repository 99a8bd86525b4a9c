#include "demo/DemoScene.h"

#include <algorithm>

#include "demo/DemoRenderer.h"

namespace drevintool {

int demoHeight(int width) {
  return std::max(width * 9 / 16, 1);
}

DemoPicture renderDemoScene(const DemoCamera& camera, int width) {
  return DemoRenderer(camera, width, demoHeight(width)).render([](const DemoPixelRays&) {});
}

}  // namespace drevintool
