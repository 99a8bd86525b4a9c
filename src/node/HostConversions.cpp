#include "node/HostConversions.h"

#include <algorithm>

#include "defocus/LensValues.h"

namespace drevin {

std::vector<int> channelNumbers(const DD::Image::ChannelSet& channels) {
  std::vector<int> numbers;
  foreach (z, channels)
    numbers.push_back(static_cast<int>(z));
  return numbers;
}

dvApertureShape apertureShape(const DrevinSettings& settings) {
  dvApertureShape shape;
  shape.type = static_cast<dvKernelType>(settings.kernelType);
  shape.aspectRatio = settings.aspectRatio;
  shape.softness = settings.softness;
  shape.numSides = settings.numSides;
  shape.bladeCurvature = settings.bladeCurvature;
  shape.rotation = settings.rotation;
  shape.sphericalAberration = settings.sphericalAberration;
  return shape;
}

dvLens lensOf(const DrevinSettings& settings, int kernelSize) {
  dvLens lens;
  lens.depthStyle = static_cast<dvDepthStyle>(settings.depthStyle);
  lens.falloff = static_cast<dvFalloff>(settings.focusRegionFalloff);
  lens.realWorldLens = settings.realWorldLens;
  lens.focalPlane = settings.focalPlane;
  lens.focusNear = settings.focusNear;
  lens.focusFar = settings.focusFar;
  lens.invHalfFocusRegion = settings.invHalfFocusRegion;
  lens.multiplier = settings.multiplier;
  lens.frontMultiplier = settings.frontMultiplier;
  lens.backMultiplier = settings.backMultiplier;
  lens.unit = unitFactor(settings.worldScale);
  lens.worldScaleMultiplier = settings.worldScaleMultiplier;
  lens.lensCoefficient = settings.lensCoefficient;
  lens.filmBackScale = settings.filmBackScale;
  lens.uiContextScale = settings.uiContextScale;
  lens.kernelSize = kernelSize;
  return lens;
}

dvPassSettings passSettings(const DrevinSettings& settings, int kernelSize) {
  return {static_cast<dvOutputType>(settings.outputType), settings.normalizeVisualization,
          kernelSize};
}

dvBlurSettings blurSettings(const DrevinSettings& settings, int kernelSize,
                            const std::vector<float>& sliceStarts) {
  return {lensOf(settings, kernelSize), settings.correctiveSlices, sliceStarts,
          static_cast<dvFocusOutput>(settings.focusOutput)};
}

dvSplatSettings splatSettings(const DrevinSettings& settings, const DD::Image::Format& format) {
  dvSplatSettings splat;
  splat.bloom = {settings.bloom, settings.bloomCurvature, settings.bloomThreshold, format.w(),
                 format.h()};
  splat.chromatic.amount = settings.chromaticAberration;
  std::copy_n(settings.chromaticAberrationOffset, 3, splat.chromatic.offset);
  splat.bloomOnly = static_cast<dvOutputType>(settings.outputType) == dvOutputType::LensBloom;
  return splat;
}

}  // namespace drevin
