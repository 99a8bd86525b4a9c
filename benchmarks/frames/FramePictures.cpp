#include "frames/FramePictures.h"

#include "frames/FrameScenes.h"

namespace drevin::bench {

FramePictures framePictures(const FrameCase& picture) {
  FramePictures pictures;
  pictures.image = frameScene(picture.scene, picture.size.width, picture.size.height);
  if (picture.brightWindow) brightenWindow(pictures.image);
  if (picture.apertureImage) pictures.aperture = apertureScene(picture.settings.maxKernelSize);
  if (picture.mattes) pictures.mattes = matteScene(picture.size.width, picture.size.height);
  if (picture.deepSamples > 0) {
    pictures.deep = std::make_shared<DeepGrid>(pictures.image, picture.deepSamples, picture.thick);
  }
  return pictures;
}

}  // namespace drevin::bench
