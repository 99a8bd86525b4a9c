#include "support/RandomScene.h"

#include <algorithm>

#include "support/Draw.h"
#include "support/RandomPictures.h"

namespace drevin::test {

namespace {

int matteChannel(Draw& draw) {
  return draw.chance(0.5) ? 0 : draw.whole(1, 4);
}

void drawFilmBack(Draw& draw, LiteralSettings& settings) {
  const float formats[9][2] = {{22.0F, 16.0F},   {22.0F, 16.0F},  {21.3F, 17.8F},
                               {24.89F, 18.67F}, {37.7F, 25.17F}, {10.26F, 7.49F},
                               {12.52F, 7.41F},  {22.2F, 14.8F},  {17.3F, 13.0F}};
  settings.filmFormat = draw.whole(0, 9);
  const bool custom = settings.filmFormat == 9;
  settings.apertureWidth = custom ? draw.real(1.0F, 40.0F) : formats[settings.filmFormat][0];
  settings.apertureHeight = custom ? draw.real(1.0F, 40.0F) : formats[settings.filmFormat][1];
}

void drawLens(Draw& draw, LiteralSettings& settings) {
  settings.realWorldLens = draw.chance(0.4);
  settings.focalLength = draw.real(10.0F, 300.0F);
  settings.fStop = draw.chance(0.05) ? 0.0F : draw.real(0.5F, 8.0F);
  settings.worldScale = draw.whole(0, 4);
  settings.worldScaleMultiplier = draw.chance(0.5) ? 1.0F : draw.real(0.2F, 3.0F);
  drawFilmBack(draw, settings);
}

void drawFocus(Draw& draw, LiteralSettings& settings) {
  settings.depthStyle = draw.whole(0, 1);
  settings.focalPlane = draw.chance(0.05) ? 0.0F : draw.real(0.5F, 60.0F);
  settings.focusRegionSize = draw.chance(0.05) ? 0.0F : draw.real(0.5F, 80.0F);
  settings.falloff = draw.whole(0, 1);
  settings.multiplier =
      draw.chance(0.03) ? -2.0F : draw.real(0.0F, draw.chance(0.5) ? 8.0F : 70.0F);
  settings.frontMultiplier = draw.chance(0.5) ? 1.0F : draw.real(0.0F, 2.0F);
  settings.backMultiplier = draw.chance(0.5) ? 1.0F : draw.real(0.0F, 2.0F);
  settings.focusOutput = draw.chance(0.6) ? 0 : draw.whole(1, 2);
  settings.defocusMatteChannel = matteChannel(draw);
  settings.normalizeVisualization = draw.chance(0.5);
  settings.contextScale = draw.chance(0.8) ? 1.0F : 0.5F;
}

void drawArtifacts(Draw& draw, LiteralSettings& settings) {
  settings.bloom = draw.chance(0.5) ? 0.0F : draw.real(-0.2F, 2.0F);
  settings.bloomCurvature = draw.chance(0.2) ? 0.0F : draw.real(0.0F, 4.0F);
  settings.bloomThreshold = draw.real(0.0F, 1.5F);
  settings.bloomMatteChannel = matteChannel(draw);
  settings.sphericalAberration = draw.chance(0.5) ? 0.0F : draw.real(-1.0F, 1.0F);
  settings.chromaticAberration = draw.chance(0.5) ? 0.0F : draw.real(-10.0F, 10.0F);
  for (float& offset : settings.chromaticOffset) {
    offset = draw.real(-1.0F, 2.0F);
  }
  settings.chromaticMatteChannel = matteChannel(draw);
}

void drawKernel(Draw& draw, LiteralSettings& settings, bool hasImage) {
  settings.kernelType = hasImage ? draw.whole(0, 2) : draw.whole(1, 2);
  settings.maxKernelSize = draw.chance(0.5) ? draw.whole(1, 16) : draw.whole(12, 64);
  settings.expandBox = draw.chance(0.2);
  settings.missingKernelChannel = draw.chance(0.5) ? 0 : draw.whole(1, 4);
  settings.aspectRatio = draw.chance(0.4) ? 1.0F : draw.real(0.4F, 2.0F);
  settings.softness = draw.chance(0.2) ? 0.0F : draw.real(0.0F, 1.5F);
  settings.numSides = draw.whole(3, 16);
  settings.bladeCurvature = draw.real(-0.5F, 1.5F);
  settings.rotation = draw.real(-0.5F, 1.0F);
}

void drawSlices(Draw& draw, LiteralSettings& settings) {
  const int counts[5] = {1, 2, 3, 10, 256};
  settings.correctiveSlices = counts[draw.whole(0, draw.chance(0.2) ? 4 : 3)];
  settings.overrideNearAndFar = draw.chance(0.3);
  settings.slicesNearAndFar[0] = draw.real(-5.0F, 40.0F);
  settings.slicesNearAndFar[1] = draw.real(0.0F, 100.0F);
}

void drawChannels(Draw& draw, LiteralScene& scene) {
  LiteralSettings& settings = scene.settings;
  for (const auto& entry : scene.image.planes) {
    if (draw.chance(0.8)) scene.channels.push_back(entry.first);
  }
  if (scene.channels.empty()) {
    scene.channels.push_back(scene.image.planes.begin()->first);
  }
  settings.bokehAll = draw.chance(0.3);
  if (draw.chance(0.4)) {
    settings.bokehChannels.clear();
    for (const int channel : {1, 2, 3, 4, firstExtraChannel, secondExtraChannel}) {
      if (draw.chance(0.6)) settings.bokehChannels.push_back(channel);
    }
  }
  const int others[4] = {1, 4, firstExtraChannel, secondExtraChannel};
  settings.depthChannel = draw.chance(0.9) ? 5 : others[draw.whole(0, 3)];
}

}  // namespace

LiteralScene randomScene(unsigned seed) {
  Draw draw(seed);
  LiteralScene scene;
  LiteralSettings& settings = scene.settings;
  drawLens(draw, settings);
  drawFocus(draw, settings);
  drawArtifacts(draw, settings);
  drawSlices(draw, settings);
  settings.outputType = draw.chance(0.6) ? 0 : draw.whole(1, 4);
  scene.image = randomImage(draw, settings);
  if (draw.chance(0.5)) scene.mattes = randomMattes(draw, scene.image);
  if (draw.chance(0.4)) scene.kernel = randomKernelImage(draw);
  drawKernel(draw, settings, scene.kernel.has_value());
  drawChannels(draw, scene);
  return scene;
}

}  // namespace drevin::test
