#pragma once

/// The hero kernel: the one full-size image of the aperture that all blur kernels come from.

#include <functional>
#include <optional>
#include <vector>

#include "kernel/ApertureShape.h"
#include "kernel/InputKernel.h"
#include "kernel/KernelImage.h"

namespace drevin {

/// Bounding box of the Kernel image: columns [left, right), rows [bottom, top).
struct dvKernelBox {
  int left = 0;
  int bottom = 0;
  int right = 0;
  int top = 0;
};

/// What decides the size of a hero kernel.
struct dvHeroRequest {
  dvKernelType type = dvKernelType::Circular;
  int maxKernelSize = 0;      ///< px
  bool sizeToFormat = false;  ///< fill the format instead of having the maximum kernel size
  int formatWidth = 0;        ///< px, of the output format
  int formatHeight = 0;       ///< px, of the output format
  std::optional<dvKernelBox> kernelInput;  ///< none: no Kernel image is connected
};

/// Side of a hero kernel and the part of the Kernel image that it shows.
struct dvHeroSizing {
  int side = 0;  ///< px; below 1 the hero has no pixels
  dvKernelSampling sampling;
};

/// Sizes a hero kernel.
///
/// A Kernel image smaller than the wanted side reduces the side only after the scales are formed,
/// so that the hero shows the fraction side / wanted of the image, from its bottom-left corner.
dvHeroSizing sizeHeroKernel(const dvHeroRequest& request);

/// Makes `hero` anew: sizing.side square, a plane for each of `channels` (ascending), not
/// normalised. Procedural shapes ignore `input`; the Kernel image ignores the rest of `shape`.
/// `cancelled`, where given, is asked before each row; once it is true the rest stays 0.
void makeHeroKernel(dvChannelFloatBuffer& hero, const dvApertureShape& shape,
                    const dvHeroSizing& sizing, const std::vector<int>& channels,
                    const dvKernelInput& input, const std::function<bool()>& cancelled = {});

}  // namespace drevin
