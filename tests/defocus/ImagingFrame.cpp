#include "defocus/ImagingFrame.h"

#include <algorithm>
#include <cstddef>

#include "defocus/CorrectiveSlices.h"
#include "defocus/DepthView.h"
#include "defocus/FlatEstimate.h"
#include "defocus/LensValues.h"
#include "kernel/FilterShapeView.h"

namespace drevin::test {

namespace {

dvHeroRequest heroRequest(const LiteralScene& scene) {
  dvHeroRequest request;
  request.type = static_cast<dvKernelType>(scene.settings.kernelType);
  request.maxKernelSize = scene.settings.maxKernelSize;
  request.sizeToFormat = scene.settings.outputType == 3;
  request.formatWidth = scene.image.formatWidth;
  request.formatHeight = scene.image.formatHeight;
  if (scene.kernel) {
    const LiteralBox& box = scene.kernel->box;
    request.kernelInput = dvKernelBox{box.left, box.bottom, box.right, box.top};
  }
  return request;
}

dvKernelInput kernelInput(const LiteralScene& scene) {
  dvKernelInput input;
  input.missingKernelChannel = scene.settings.missingKernelChannel;
  if (scene.kernel) {
    input.read = [&scene](int column, int row, int channel) {
      return scene.kernel->at(column, row, channel);
    };
    for (const auto& entry : scene.kernel->planes) {
      input.channels.push_back(entry.first);
    }
  }
  return input;
}

dvSplatSettings splatSettings(const LiteralSettings& settings, int width, int height) {
  dvSplatSettings splat;
  splat.bloom = {settings.bloom, settings.bloomCurvature, settings.bloomThreshold, width, height};
  splat.chromatic.amount = settings.chromaticAberration;
  std::copy_n(settings.chromaticOffset, 3, splat.chromatic.offset);
  splat.bloomOnly = settings.outputType == 1;
  return splat;
}

std::vector<float> starts(const LiteralSettings& settings, const dvLens& lens) {
  const float* custom = settings.slicesNearAndFar;
  const dvSliceVolume volume = settings.overrideNearAndFar
                                   ? customSliceVolume(custom[0], custom[1])
                                   : focusSliceVolume(lens.focusNear, lens.focusFar);
  return sliceStarts(settings.correctiveSlices, settings.focalPlane, volume);
}

/// The row's buffer, addressed by absolute column.
const float* absolute(const std::vector<float>& row, int left) {
  return row.data() - left;
}

}  // namespace

dvLens lensOf(const LiteralSettings& settings, int formatWidth, int formatHeight, int kernelSize) {
  dvLens lens;
  lens.depthStyle = static_cast<dvDepthStyle>(settings.depthStyle);
  lens.falloff = static_cast<dvFalloff>(settings.falloff);
  lens.realWorldLens = settings.realWorldLens;
  lens.focalPlane = settings.focalPlane;
  const dvFocusSpan span = focusSpan(settings.focalPlane, settings.focusRegionSize);
  lens.focusNear = span.near;
  lens.focusFar = span.far;
  lens.invHalfFocusRegion = span.invHalfRegion;
  lens.multiplier = settings.multiplier;
  lens.frontMultiplier = settings.frontMultiplier;
  lens.backMultiplier = settings.backMultiplier;
  lens.unit = unitFactor(settings.worldScale);
  lens.worldScaleMultiplier = settings.worldScaleMultiplier;
  lens.lensCoefficient = lensCoefficient(settings.focalLength, settings.fStop, settings.focalPlane,
                                         lens.unit, settings.worldScaleMultiplier);
  lens.filmBackScale =
      filmBackScale(formatWidth, formatHeight, settings.apertureWidth, settings.apertureHeight);
  lens.uiContextScale = settings.contextScale;
  lens.kernelSize = kernelSize;
  return lens;
}

ImagingFrame::ImagingFrame(const LiteralScene& scene) : scene_(scene) {
  const LiteralSettings& settings = scene.settings;
  const std::vector<int>& processed = settings.bokehAll ? scene.channels : settings.bokehChannels;
  std::set_intersection(scene.channels.begin(), scene.channels.end(), processed.begin(),
                        processed.end(), std::back_inserter(splatted_));
  const int width = scene.image.formatWidth;
  const int height = scene.image.formatHeight;
  settings_.blur.lens = lensOf(settings, width, height, settings.maxKernelSize);
  settings_.blur.slices = settings.correctiveSlices;
  settings_.blur.sliceStarts = starts(settings, settings_.blur.lens);
  settings_.blur.focusOutput = static_cast<dvFocusOutput>(settings.focusOutput);
  if (settings.outputType != 2 && settings.outputType != 4) {
    prepareKernels(processed);
  }
  settings_.frame = {splatSettings(settings, width, height), &bank_, settings.correctiveSlices,
                     estimate_.padding, width};
}

void ImagingFrame::prepareKernels(const std::vector<int>& processed) {
  const LiteralSettings& s = scene_.settings;
  dvApertureShape shape{static_cast<dvKernelType>(s.kernelType),
                        s.aspectRatio,
                        s.softness,
                        s.numSides,
                        s.bladeCurvature,
                        s.rotation,
                        s.sphericalAberration};
  makeHeroKernel(hero_, shape, sizeHeroKernel(heroRequest(scene_)), processed, kernelInput(scene_));
  if (s.outputType == 3) {
    return;
  }
  dvLens& lens = settings_.blur.lens;
  withFixedModes(lens, [&](const auto& fixed) {
    auto estimate = flatEstimate(fixed);
    for (int y = 0; y < scene_.image.formatHeight; ++y) {
      const dvColumns columns{0, scene_.image.formatWidth};
      estimate.addRow(read(scene_.image, y, columns, s.depthChannel).data(), columns.right);
    }
    estimate_ = paddingResult(estimate.largest(), s.maxKernelSize);
  });
  lens.kernelSize = estimate_.kernelSize;
  bank_.resize(static_cast<std::size_t>(bankSize(estimate_.kernelSize)));
  for (std::size_t i = 0; i < bank_.size(); ++i) {
    initializeBankEntry(bank_[i], static_cast<int>(i), hero_, processed);
  }
}

std::vector<float> ImagingFrame::read(const LiteralPicture& picture, int y,
                                      const dvColumns& columns, int channel) const {
  std::vector<float> row;
  for (int x = columns.left; x < columns.right; ++x) {
    row.push_back(picture.at(x, y, channel));
  }
  return row;
}

std::map<int, std::vector<float>> ImagingFrame::row(int y, int left, int right) const {
  Planes out;
  for (const int channel : scene_.channels) {
    out[channel] = read(scene_.image, y, {left, right}, channel);
  }
  if (scene_.settings.outputType <= 1) {
    defocus(y, left, right, out);
  } else if (scene_.settings.outputType == 3) {
    for (auto& [channel, values] : out) {
      filterShapeRow(hero_, channel, y, left, right, values.data() - left);
    }
  } else {
    depthView(y, left, right, out);
  }
  return out;
}

void ImagingFrame::depthView(int y, int left, int right, Planes& out) const {
  const LiteralSettings& s = scene_.settings;
  const dvPassSettings pass{static_cast<dvOutputType>(s.outputType), s.normalizeVisualization,
                            s.maxKernelSize};
  const std::vector<float> depth = read(scene_.image, y, {left, right}, s.depthChannel);
  for (auto& [channel, values] : out) {
    if (channel <= 3) {
      depthViewRow(absolute(depth, left), channel, left, right, settings_.blur.lens, pass,
                   values.data() - left);
    }
  }
}

ImagingRow ImagingFrame::sourceRow(int sy, const dvColumns& columns) const {
  const LiteralSettings& s = scene_.settings;
  ImagingRow held;
  dvSourceRow& row = held.row;
  row.y = sy;
  row.clampedY = std::clamp(sy, scene_.image.box.bottom, scene_.image.box.top);
  const auto hold = [&](const LiteralPicture& picture, const dvColumns& wanted, int channel) {
    held.values.push_back(read(picture, row.clampedY, wanted, channel));
    return absolute(held.values.back(), wanted.left);
  };
  for (const int channel : splatted_)
    row.colour.push_back(hold(scene_.image, columns, channel));
  const int width = scene_.image.formatWidth;
  const dvColumns depthColumns{clampedColumn(columns.left, width),
                               clampedColumn(columns.right - 1, width) + 1};
  row.depth = hold(scene_.image, depthColumns, s.depthChannel);
  const int mattes[3] = {s.bloomMatteChannel, s.defocusMatteChannel, s.chromaticMatteChannel};
  const float** places[3] = {&row.bloomMatte, &row.defocusMatte, &row.chromaticMatte};
  for (int i = 0; i < 3 && scene_.mattes; ++i) {
    if (mattes[i] != 0) *places[i] = hold(*scene_.mattes, columns, mattes[i]);
  }
  return held;
}

void ImagingFrame::defocus(int y, int left, int right, Planes& out) const {
  dvScanlineDefocus defocus(settings_, {left, y, right}, splatted_);
  for (int sy = y - estimate_.padding; sy <= y + estimate_.padding; ++sy)
    defocus.splatSourceRow(sourceRow(sy, defocus.sourceColumns()).row);
  for (std::size_t i = 0; i < splatted_.size(); ++i) {
    defocus.composite(i, out[splatted_[i]].data() - left);
  }
}

}  // namespace drevin::test
