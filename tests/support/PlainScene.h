#pragma once

/// Scenes of constant colour and depth, to which a test adds what it is about.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "support/LiteralFrame.h"

namespace drevin::test {

inline std::vector<float> constantPlane(const LiteralBox& box, float value) {
  return std::vector<float>(static_cast<std::size_t>(box.right - box.left) *
                                static_cast<std::size_t>(box.top - box.bottom),
                            value);
}

/// A pixel of a plane of the scene's image, by absolute column and row.
inline float& pixelAt(LiteralPicture& picture, int channel, int column, int row) {
  const LiteralBox& box = picture.box;
  return picture.planes.at(channel)[static_cast<std::size_t>(row - box.bottom) *
                                        static_cast<std::size_t>(box.right - box.left) +
                                    static_cast<std::size_t>(column - box.left)];
}

/// A width x height picture of red 0.25, green 0.5, blue 0.75, alpha 1 at one depth, all requested;
/// focal plane 10, focus region 8 to 12, one slice, largest kernel 64 px.
inline LiteralScene plainScene(int width, int height, float depth) {
  LiteralScene scene;
  scene.image.formatWidth = width;
  scene.image.formatHeight = height;
  scene.image.box = {0, 0, width, height};
  for (int channel = 1; channel <= 4; ++channel) {
    scene.image.planes[channel] =
        constantPlane(scene.image.box, 0.25F * static_cast<float>(channel));
  }
  scene.image.planes[5] = constantPlane(scene.image.box, depth);
  scene.channels = {1, 2, 3, 4};
  scene.settings.focalPlane = 10.0F;
  scene.settings.focusRegionSize = 4.0F;
  scene.settings.correctiveSlices = 1;
  scene.settings.maxKernelSize = 64;
  return scene;
}

}  // namespace drevin::test
