#include "BenchScene.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "defocus/CorrectiveSlices.h"
#include "defocus/LensValues.h"

namespace drevin::bench {

namespace {

constexpr int depthChannel = 5;
constexpr float focalPlane = 10.0F;
constexpr float farDepth = 20.0F;

/// Reproducible noise in [0, 1), and now and then a light.
float noise(std::uint32_t i) {
  i = (i ^ 61U) ^ (i >> 16U);
  i *= 9U;
  i ^= i >> 4U;
  i *= 0x27d4eb2dU;
  i ^= i >> 15U;
  const float value = static_cast<float>(i >> 8U) * 0x1p-24F;
  return value > 0.9995F ? 500.0F * value : value;
}

std::vector<float> noisePlane(int width, int height, std::uint32_t seed) {
  std::vector<float> plane(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  std::uint32_t i = seed * 7919U;
  for (float& value : plane)
    value = noise(i++);
  return plane;
}

}  // namespace

test::LiteralScene uniformScene(int width, int height, int blur) {
  test::LiteralScene scene;
  scene.settings.focalPlane = focalPlane;
  scene.settings.multiplier = static_cast<float>(blur);
  scene.image.formatWidth = width;
  scene.image.formatHeight = height;
  scene.image.box = {0, 0, width, height};
  scene.channels = {1, 2, 3, 4};
  for (const int channel : scene.channels) {
    scene.image.planes[channel] = noisePlane(width, height, static_cast<std::uint32_t>(channel));
  }
  scene.image.planes[depthChannel].assign(scene.image.planes[1].size(), farDepth);
  return scene;
}

Frame::Frame(const test::LiteralScene& scene) : scene_(scene) {
  const test::LiteralSettings& s = scene.settings;
  dvHeroRequest request;
  request.maxKernelSize = s.maxKernelSize;
  dvApertureShape shape;
  shape.softness = s.softness;
  makeHeroKernel(hero_, shape, sizeHeroKernel(request), channels_, {});

  const dvFocusSpan span = focusSpan(s.focalPlane, s.focusRegionSize);
  dvLens& lens = settings_.blur.lens;
  lens.focalPlane = s.focalPlane;
  lens.focusNear = span.near;
  lens.focusFar = span.far;
  lens.invHalfFocusRegion = span.invHalfRegion;
  lens.multiplier = s.multiplier;
  lens.kernelSize = static_cast<int>(s.multiplier);

  settings_.blur.slices = s.correctiveSlices;
  settings_.blur.sliceStarts =
      sliceStarts(s.correctiveSlices, s.focalPlane, focusSliceVolume(span.near, span.far));
  settingsBank_.resize(static_cast<std::size_t>(bankSize(lens.kernelSize)));
  for (std::size_t i = 0; i < settingsBank_.size(); ++i) {
    initializeBankEntry(settingsBank_[i], static_cast<int>(i), hero_, channels_);
  }
  settings_.frame = {
      {}, &settingsBank_, s.correctiveSlices, lens.kernelSize / 2 + 2, scene.image.formatWidth};
}

const float* Frame::plane(int channel, int y) const {
  const auto row = static_cast<std::size_t>(std::clamp(y, 0, scene_.image.formatHeight - 1));
  return scene_.image.planes.at(channel).data() +
         row * static_cast<std::size_t>(scene_.image.formatWidth);
}

float Frame::row(int y) const {
  const int padding = settings_.frame.padding;
  const int width = scene_.image.formatWidth;
  // Columns within the padding of the edges are left out: their kernels reach outside the picture.
  const dvOutputSpan out{padding, y, width - padding};
  dvScanlineDefocus defocus(settings_, out, channels_);
  for (int sy = y - padding; sy <= y + padding; ++sy) {
    dvSourceRow row;
    row.y = sy;
    row.clampedY = std::clamp(sy, 0, scene_.image.formatHeight - 1);
    for (const int channel : channels_)
      row.colour.push_back(plane(channel, sy));
    row.depth = plane(depthChannel, sy);
    defocus.splatSourceRow(row);
  }
  std::vector<float> result(static_cast<std::size_t>(width));
  for (std::size_t i = 0; i < channels_.size(); ++i)
    defocus.composite(i, result.data());
  return result[static_cast<std::size_t>(width / 2)];
}

}  // namespace drevin::bench
