#include "frames/FrameCase.h"

#include "frames/FrameScenes.h"

namespace drevin::bench {

FrameCase frameCase(const std::string& scene, double blur, FrameSize size) {
  FrameCase picture;
  picture.scene = scene;
  picture.size = size;
  picture.settings.multiplier = static_cast<float>(blur);
  picture.settings.focalPlane = frameFocalPlane;
  picture.settings.focusRegionSize = frameFocusRegion;
  return picture;
}

FrameCase deepCase(const std::string& scene, double blur, FrameSize size, int samples, bool thick) {
  FrameCase picture = frameCase(scene, blur, size);
  picture.deepSamples = samples;
  picture.thick = thick;
  return picture;
}

FrameCase withColouredAperture(FrameCase picture) {
  constexpr int kernelImage = 0;
  picture.settings.kernelType = kernelImage;
  picture.apertureImage = true;
  return picture;
}

FrameCase withEffects(FrameCase picture, float chromaticAberration) {
  picture.settings.chromaticAberration = chromaticAberration;
  picture.settings.bloom = 1.0F;
  picture.mattes = true;
  picture.settings.bloomMatteChannel = 1;
  picture.settings.defocusMatteChannel = 2;
  picture.settings.chromaticMatteChannel = 3;
  return picture;
}

FrameCase withBrightWindow(FrameCase picture) {
  picture.brightWindow = true;
  return picture;
}

}  // namespace drevin::bench
