/// Preparing the kernels when the node opens.

#include <algorithm>
#include <vector>

#include "DDImage/DeepOp.h"
#include "DDImage/DeepPlane.h"
#include "deep/DeepEstimate.h"
#include "defocus/FlatEstimate.h"
#include "defocus/PassValue.h"
#include "kernel/HeroKernel.h"
#include "kernel/PaddingEstimate.h"
#include "node/DeepPixels.h"
#include "node/Drevin.h"
#include "node/HostConversions.h"
#include "node/HostParallel.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::DeepOp;
using DD::Image::DeepPixel;
using DD::Image::DeepPlane;
using DD::Image::Iop;
using DD::Image::Mask_Deep;
using DD::Image::Row;

namespace {

/// The Kernel image as the aperture code reads it, pixel by pixel through the host.
dvKernelInput kernelImage(Iop* kernel, Channel missingKernelChannel) {
  dvKernelInput image;
  if (kernel == nullptr) return image;
  image.read = [kernel](int column, int row, int channel) {
    return kernel->at(column, row, static_cast<Channel>(channel));
  };
  image.channels = channelNumbers(kernel->info().channels());
  image.missingKernelChannel = static_cast<int>(missingKernelChannel);
  return image;
}

/// Calls add(estimate, y) for every row y below `height`, each on any thread with an estimate of
/// that thread's own, and gives the estimate of all.
template <typename Estimate, typename Add>
void scanRows(int height, dvParallel& parallel, Estimate& estimate, const Add& add) {
  std::vector<Estimate> parts(static_cast<std::size_t>(parallel.workers()), estimate);
  parallel.forEach(height,
                   [&](int worker, int y) { add(parts[static_cast<std::size_t>(worker)], y); });
  for (const Estimate& part : parts)
    estimate.add(part);
}

}  // namespace

bool Drevin::openingAborted() const {
  if (!openingAborted_ && aborted()) openingAborted_ = true;
  return openingAborted_;
}

void Drevin::initialize() {
  openingAborted_ = false;
  const auto output = static_cast<dvOutputType>(settings_.outputType);
  if (output == dvOutputType::FocalDistance || output == dvOutputType::FocusMatte) return;
  progressMessage("Aperture");
  makeHeroKernel(output == dvOutputType::FilterShape);
  if (output == dvOutputType::FilterShape || openingAborted()) return;
  progressMessage("Size estimate");
  computeOptimalPadding();
  if (openingAborted()) return;
  progressMessage("Kernels");
  kernelBank_.clear();
  kernelBank_.resize(static_cast<std::size_t>(bankSize(kernelSize_)));
  const int pairs = static_cast<int>(kernelBank_.size() / 2) + 1;
  dvHostParallel parallel([this] { return openingAborted(); });
  // The largest first, so that no thread is left with much at the end.
  parallel.forEach(pairs, [&](int /*worker*/, int item) {
    initializeKernelsThreaded(static_cast<unsigned>(pairs - 1 - item), static_cast<unsigned>(pairs),
                              this);
  });
}

void Drevin::makeHeroKernel(bool sizeToFormat) {
  Iop* kernel = input(dvInput::kernel);
  kernelChannels_ = settings_.processChannels;
  dvHeroRequest request;
  request.type = static_cast<dvKernelType>(settings_.kernelType);
  request.maxKernelSize = settings_.maxKernelSize;
  request.sizeToFormat = sizeToFormat;
  request.formatWidth = format().w();
  request.formatHeight = format().h();
  if (kernel != nullptr) {
    request.kernelInput = dvKernelBox{kernel->x(), kernel->y(), kernel->r(), kernel->t()};
  }
  drevin::makeHeroKernel(heroKernel_, apertureShape(settings_), sizeHeroKernel(request),
                         channelNumbers(kernelChannels_),
                         kernelImage(kernel, settings_.missingKernelChannel),
                         [this] { return openingAborted(); });
}

template <typename Estimate>
void Drevin::scanFlatDepth(Estimate& estimate, dvParallel& parallel) {
  const int width = format().w();
  if (width <= 0) return;
  const ChannelSet depth(settings_.depthChannel);
  scanRows(format().h(), parallel, estimate, [&](Estimate& part, int y) {
    Row row(0, width);
    row.get(input0(), y, 0, width, depth);
    part.addRow(row[settings_.depthChannel], width);
  });
}

template <typename Estimate>
void Drevin::scanDeepDepth(Estimate& estimate, dvParallel& parallel) {
  auto* deep = dynamic_cast<DeepOp*>(Op::input(dvInput::deep));
  const int width = format().w();
  if (width <= 0) return;
  scanRows(format().h(), parallel, estimate, [&](Estimate& part, int y) {
    DeepPlane plane;
    if (!deep->deepEngine(y, 0, width, Mask_Deep, plane)) return;
    const ChannelSet& channels = plane.channels();
    std::vector<float> depths;
    depths.reserve(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) {
      if (!plane.box().contains(Box(x, y, x + 1, y + 1))) continue;
      const DeepPixel pixel = plane.getPixel(y, x);
      if (pixel.getSampleCount() > 0) depths.push_back(farthestBack({pixel, channels}));
    }
    part.addRow(depths.data(), static_cast<int>(depths.size()));
  });
}

int Drevin::largestDiameter(const dvLens& lens, dvParallel& parallel) {
  int largest = 0;
  withFixedModes(lens, [&](const auto& fixed) {
    if (settings_.deepInput) {
      auto estimate = deepEstimate(fixed);
      scanDeepDepth(estimate, parallel);
      largest = estimate.largest();
    } else {
      auto estimate = flatEstimate(fixed);
      scanFlatDepth(estimate, parallel);
      largest = estimate.largest();
    }
  });
  return largest;
}

void Drevin::computeOptimalPadding() {
  dvHostParallel parallel([this] { return openingAborted(); });
  const int largest = largestDiameter(lensOf(settings_, kernelSize_), parallel);
  // Of a scan that was cut short nothing is known.
  if (parallel.aborted()) return;
  const dvPaddingResult result = paddingResult(largest, settings_.maxKernelSize);
  if (result.exceeded) {
    warning(
        "Max kernel size is less than the maximum coc in the result, you may want to consider "
        "increasing the max kernel size above %d.",
        result.largest);
  }
  kernelSize_ = result.kernelSize;
  padding_ = result.padding;
}

void Drevin::initializeKernel(int index) {
  initializeBankEntry(kernelBank_[static_cast<std::size_t>(index)], index, heroKernel_,
                      channelNumbers(kernelChannels_));
}

void Drevin::initializeKernelPair(int pair) {
  const int first = std::max(2 * pair - 1, 0);
  const int second = 2 * pair;
  const int size = static_cast<int>(kernelBank_.size());
  if (first < size) initializeKernel(first);
  if (first < second && second < size) {
    kernelBank_[static_cast<std::size_t>(second)] = kernelBank_[static_cast<std::size_t>(first)];
  }
}

void Drevin::buildKernel(dvChannelFloatBuffer& kernel, int size, const Channel& z) {
  drevin::buildKernel(kernel, size, heroKernel_, static_cast<int>(z));
}

void initializeKernelsThreaded(unsigned threadIndex, unsigned threadCount, void* node) {
  auto& drevin = *static_cast<Drevin*>(node);
  const std::size_t pairs = drevin.kernelBank().size() / 2 + 1;
  for (std::size_t i = threadIndex; i < pairs && !drevin.openingAborted(); i += threadCount)
    drevin.initializeKernelPair(static_cast<int>(i));
}

}  // namespace drevin
