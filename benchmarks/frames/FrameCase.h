#pragma once

/// What one picture of the frame table is made of, with which controls.

#include <string>

#include "support/LiteralSettings.h"

namespace drevin::bench {

/// px
struct FrameSize {
  int width = 0;
  int height = 0;
};

struct FrameCase {
  std::string scene;               ///< a kind of frameScene()
  FrameSize size;                  ///< of the format, which the picture fills
  test::LiteralSettings settings;  ///< of the node and of its literal counterparts alike
  bool apertureImage = false;      ///< whether the Kernel input is connected
  bool mattes = false;             ///< whether the mattes are connected
  bool brightWindow = false;       ///< see withBrightWindow()
  int deepSamples = 0;             ///< a pixel; 0 for a flat picture
  bool thick = false;              ///< whether deep samples overlap, or are points
};

/// A flat picture of that kind, `blur` px at the ends of the focus region, all else as by default.
FrameCase frameCase(const std::string& scene, double blur, FrameSize size);

/// The same with deep samples.
FrameCase deepCase(const std::string& scene, double blur, FrameSize size, int samples, bool thick);

/// The same through an aperture image in colour: every channel has kernels of its own.
FrameCase withColouredAperture(FrameCase picture);

/// The same with chromatic aberration of that amount, bloom and all three mattes. At 256 px of blur
/// green is shifted by 1.3 px at an amount of 0.2, by 6.4 px at 1 and by 25 px at 4.
FrameCase withEffects(FrameCase picture, float chromaticAberration = 0.2F);

/// The same with a window in which it is a hundred times brighter.
FrameCase withBrightWindow(FrameCase picture);

}  // namespace drevin::bench
