#include "engine/FrameScenes.h"

#include <algorithm>
#include <cmath>

#include "support/Draw.h"
#include "support/PlainScene.h"

namespace drevin::test {

LiteralScene farScene(float blur, int width, int height) {
  LiteralScene scene = plainScene(width, height, 1000.0F);
  scene.settings.multiplier = blur;
  scene.settings.maxKernelSize = 80;
  Draw draw(7);
  for (int channel = 1; channel <= 3; ++channel) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const float wave = std::sin(static_cast<float>(x * channel + 2 * y) * 0.03F);
        const float light = draw.chance(0.001) ? draw.real(20.0F, 500.0F) : 0.0F;
        pixelAt(scene.image, channel, x, y) = 1.1F + wave + draw.real(0.0F, 0.5F) + light;
      }
    }
  }
  scene.image.planes[4] = constantPlane(scene.image.box, 1.0F);
  return scene;
}

LiteralScene rampScene(float blur, int slices, int width, int height) {
  LiteralScene scene = farScene(blur, width, height);
  scene.settings.correctiveSlices = slices;
  const auto last = static_cast<float>(width + height / 2);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      pixelAt(scene.image, 5, x, y) = 7.5F + 5.0F * static_cast<float>(x + y / 2) / last;
  }
  return scene;
}

LiteralScene stagedScene(float blur, int slices, int width, int height) {
  LiteralScene scene = rampScene(blur, slices, width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (8 * x < 3 * width) pixelAt(scene.image, 5, x, y) = 13.0F;
      if (2 * x > width && 15 * y > 7 * height) pixelAt(scene.image, 5, x, y) = 8.3F;
    }
  }
  return scene;
}

LiteralScene brightSide(float bright, float dark) {
  LiteralScene scene = farScene(40.0F);
  for (int channel = 1; channel <= 3; ++channel) {
    for (int y = 0; y < scene.image.formatHeight; ++y) {
      for (int x = 0; x < scene.image.formatWidth; ++x)
        pixelAt(scene.image, channel, x, y) = x < 150 ? bright : dark;
    }
  }
  return scene;
}

void addMattesAndShift(LiteralScene& scene) {
  LiteralSettings& settings = scene.settings;
  settings.bloom = 1.5F;
  settings.bloomMatteChannel = 1;
  settings.defocusMatteChannel = 2;
  settings.chromaticMatteChannel = 3;
  settings.chromaticAberration = 5.0F;
  scene.mattes = scene.image;
  for (auto& [channel, plane] : scene.mattes->planes) {
    for (float& value : plane)
      value = std::min(value * 0.4F, 1.2F);
  }
}

}  // namespace drevin::test
