#pragma once

/// Every control value and the values that validation derives from them. Defaults live here only.

#include "DDImage/Channel.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/MetaData.h"

namespace drevin {

struct DrevinSettings {
  float focalPlane = 100.0F;     ///< scene units
  float focusRegionSize = 1.0F;  ///< scene units
  DD::Image::Channel defocusMatteChannel = DD::Image::Chan_Black;
  int maxKernelSize = 256;  ///< px
  float multiplier = 1.0F;  ///< px at full ramp
  float frontMultiplier = 1.0F;
  float backMultiplier = 1.0F;
  int kernelType = 1;  ///< KernelTypeENUM
  float aspectRatio = 1.0F;
  int numSides = 6;
  float bladeCurvature = 0.1F;
  float rotation = 0.0F;  ///< turns
  float sphericalAberration = 0.0F;
  float chromaticAberration = 0.0F;
  DD::Image::Channel chromaticAberrationMatteChannel = DD::Image::Chan_Black;
  DD::Image::Channel missingKernelChannel = DD::Image::Chan_Black;
  float softness = 0.1F;
  float focalLength = 35.0F;  ///< mm
  float fStop = 6.0F;
  bool realWorldLens = false;
  int outputType = 0;          ///< OutputTypeENUM
  int focusRegionFalloff = 0;  ///< FalloffTypeENUM
  float chromaticAberrationOffset[3] = {0.6F, 1.0F, 1.0F};
  int focusOutput = 0;  ///< FocusTypeENUM
  int worldScale = 1;   ///< WorldScaleENUM
  float worldScaleMultiplier = 1.0F;
  int filmFormat = 0;  ///< FilmFormatENUM
  int depthStyle = 0;  ///< DepthStyleENUM
  int correctiveSlices = 10;
  bool overrideNearAndFar = false;
  float slicesNearAndFar[2] = {0.0F, 0.0F};  ///< scene units
  float bloom = 0.0F;
  float bloomCurvature = 2.0F;
  float bloomThreshold = 0.7F;
  DD::Image::Channel bloomMatteChannel = DD::Image::Chan_Black;
  float apertureWidth = 22.0F;   ///< mm
  float apertureHeight = 16.0F;  ///< mm

  // Derived when validating for real.
  float filmBackScale = 0.0F;  ///< px per mm
  float halfFocusRegion = 0.0F;
  float invHalfFocusRegion = 0.0F;
  float focusFar = 0.0F;
  float focusNear = 0.0F;
  float focusRange = 0.0F;
  float lensCoefficient = 0.0F;  ///< mm
  float uiContextScale = 1.0F;   ///< proxy x scale of the interface's context

  bool normalizeVisualization = true;
  bool integrateFrontAndBackSeparately = false;
  bool deepInput = false;  ///< derived: a deep operator is connected
  bool expandBBoxToMaxKernelSize = false;
  DD::Image::Channel depthChannel = DD::Image::Chan_Z;
  DD::Image::ChannelSet bokehChannels = DD::Image::Mask_RGBA;
  DD::Image::ChannelSet processChannels = DD::Image::Mask_RGBA;  ///< derived by each request
  DD::Image::MetaData::Bundle metadata;                          ///< stays empty
};

}  // namespace drevin
