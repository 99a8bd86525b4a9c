/// Validation: lens values from the camera, inputs, derived values, slices and the bounding box.

#include "DDImage/CameraOp.h"
#include "DDImage/DeepOp.h"
#include "DDImage/OutputContext.h"
#include "DDImage/ddImageVersionNumbers.h"
#include "defocus/CorrectiveSlices.h"
#include "defocus/LensValues.h"
#include "kernel/ApertureShape.h"
#include "kernel/PaddingEstimate.h"
#include "node/Drevin.h"

namespace drevin {

using DD::Image::CameraOp;
using DD::Image::Chan_Black;
using DD::Image::Channel;
using DD::Image::DeepOp;
using DD::Image::Format;

namespace {

struct CameraLens {
  double focusDistance, fStop, focalLength, horizontalAperture, verticalAperture;
};

/// The kit renamed the camera's getters in its version 14.
CameraLens lensOfCamera(const CameraOp& camera) {
#if kDDImageVersionMajorNum < 14
  return {camera.focal_point(), camera.fstop(), camera.focal_length(), camera.film_width(),
          camera.film_height()};
#else
  return {camera.focusDistance(), camera.fStop(), camera.focalLength(), camera.horizontalAperture(),
          camera.verticalAperture()};
#endif
}

}  // namespace

void Drevin::_validate(bool for_real) {
  bloomMatteUsed_ = defocusMatteUsed_ = chromaticMatteUsed_ = false;
  const bool wantsKernelImage = settings_.kernelType == static_cast<int>(dvKernelType::Input);
  if (wantsKernelImage && Op::input(dvInput::kernel) == nullptr)
    error("No input kernel connected!");
  takeCameraValues();
  copy_info();
  for (const int i : {dvInput::image, dvInput::kernel}) {
    if (Op* op = Op::input(i)) op->validate(for_real);
  }
  validateMattes();
  validateDeepInput();
  if (settings_.expandBBoxToMaxKernelSize) growBoundingBox();
  if (for_real) {
    deriveLensValues();
    deriveSlices();
  }
  resetKernels();
}

void Drevin::takeCameraValues() {
  const auto* camera = dynamic_cast<const CameraOp*>(Op::input(dvInput::camera));
  if (camera == nullptr) return;
  const CameraLens lens = lensOfCamera(*camera);
  settings_.focalPlane = static_cast<float>(lens.focusDistance);
  settings_.fStop = static_cast<float>(lens.fStop);
  settings_.focalLength = static_cast<float>(lens.focalLength);
  settings_.apertureWidth = static_cast<float>(lens.horizontalAperture);
  settings_.apertureHeight = static_cast<float>(lens.verticalAperture);
}

void Drevin::validateMattes() {
  Op* mattes = Op::input(dvInput::mattes);
  if (mattes == nullptr) return;
  mattes->validate(true);
  useMatte(settings_.bloomMatteChannel, bloomMatteUsed_);
  useMatte(settings_.defocusMatteChannel, defocusMatteUsed_);
  useMatte(settings_.chromaticAberrationMatteChannel, chromaticMatteUsed_);
}

void Drevin::useMatte(Channel channel, bool& used) {
  if (channel == Chan_Black) return;
  matteChannels_ += channel;
  used = true;
}

void Drevin::validateDeepInput() {
  auto* deep = dynamic_cast<DeepOp*>(Op::input(dvInput::deep));
  settings_.deepInput = deep != nullptr;
  if (deep == nullptr) return;
  deep->op()->validate(true);
  deep->op()->cached(cached());
}

void Drevin::growBoundingBox() {
  const int k = settings_.maxKernelSize;
  info_.clipmove(-(k / 2), -(k / 2), (k - 1) / 2, (k - 1) / 2);
}

void Drevin::deriveLensValues() {
  DrevinSettings& s = settings_;
  const Format& format = full_size_format();
  s.filmBackScale =
      filmBackScale(format.width(), format.height(), s.apertureWidth, s.apertureHeight);
  const dvFocusSpan span = focusSpan(s.focalPlane, s.focusRegionSize);
  s.halfFocusRegion = span.halfRegion;
  s.invHalfFocusRegion = span.invHalfRegion;
  s.focusFar = span.far;
  s.focusNear = span.near;
  s.focusRange = span.range;
  s.uiContextScale = uiContext().scale_x();
  s.lensCoefficient = lensCoefficient(s.focalLength, s.fStop, s.focalPlane,
                                      unitFactor(s.worldScale), s.worldScaleMultiplier);
}

void Drevin::deriveSlices() {
  const DrevinSettings& s = settings_;
  const dvSliceVolume volume = s.overrideNearAndFar
                                   ? customSliceVolume(s.slicesNearAndFar[0], s.slicesNearAndFar[1])
                                   : focusSliceVolume(s.focusNear, s.focusFar);
  sliceBoundaries_ = sliceStarts(s.correctiveSlices, s.focalPlane, volume);
}

void Drevin::resetKernels() {
  kernelSize_ = settings_.maxKernelSize;
  padding_ = validationPadding(settings_.maxKernelSize);
  requestedBox_.reset();
  requestedChannels_.clear();
  freeKernels();
}

void Drevin::freeKernels() {
  kernelBank_.clear();
  heroKernel_.clear();
  kernelChannels_.clear();
  picture_.clear();
}

}  // namespace drevin
