#pragma once

/// Every control value of the literal frame as plain numbers, with the controls' defaults.

#include <vector>

namespace drevin::test {

struct LiteralSettings {
  std::vector<int> bokehChannels = {1, 2, 3, 4};
  bool bokehAll = false;  ///< stands for every requested channel
  int depthChannel = 5;
  int outputType = 0;   ///< 0 image, 1 bloom, 2 focal distance, 3 filter shape, 4 focus matte
  int focusOutput = 0;  ///< 0 both, 1 front, 2 back
  float multiplier = 1.0F;
  float frontMultiplier = 1.0F;
  float backMultiplier = 1.0F;
  int depthStyle = 0;  ///< 0 real, 1 reciprocal
  float focalPlane = 100.0F;
  float focusRegionSize = 1.0F;
  int falloff = 0;  ///< 0 linear, 1 quadratic
  int defocusMatteChannel = 0;
  bool normalizeVisualization = true;

  bool realWorldLens = false;
  float focalLength = 35.0F;
  float fStop = 6.0F;
  int worldScale = 1;  ///< 0 mm, 1 cm, 2 m, 3 inches, 4 feet
  float worldScaleMultiplier = 1.0F;
  int filmFormat = 0;  ///< 9 is custom; the aperture pair below holds its size in any case
  float apertureWidth = 22.0F;
  float apertureHeight = 16.0F;

  float bloom = 0.0F;
  float bloomCurvature = 2.0F;
  float bloomThreshold = 0.7F;
  int bloomMatteChannel = 0;
  float sphericalAberration = 0.0F;
  float chromaticAberration = 0.0F;
  float chromaticOffset[3] = {0.6F, 1.0F, 1.0F};
  int chromaticMatteChannel = 0;

  int kernelType = 1;  ///< 0 image, 1 circular, 2 blades
  int maxKernelSize = 256;
  bool expandBox = false;
  int missingKernelChannel = 0;
  float aspectRatio = 1.0F;
  float softness = 0.1F;
  int numSides = 6;
  float bladeCurvature = 0.1F;
  float rotation = 0.0F;

  int correctiveSlices = 10;
  bool overrideNearAndFar = false;
  float slicesNearAndFar[2] = {0.0F, 0.0F};

  float contextScale = 1.0F;  ///< proxy scale of the interface
};

}  // namespace drevin::test
