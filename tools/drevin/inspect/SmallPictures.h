#pragma once

/// Pictures of every n-th pixel, on which a render is quick enough to be timed.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "EmbeddedHost/DeepInput.h"
#include "deep/DeepExrSource.h"
#include "picture/Picture.h"

namespace drevintool {

/// How many pixels of a picture one of the small picture stands for, in each direction, so that
/// about 100000 pixels are left, and at most about a million deep samples.
int strideFor(std::size_t pixels, std::uint64_t samples = 0);

/// Columns and rows 0, n, 2 n, ... of the picture's box, as floats, in a format 1/n as large.
Picture everyNth(const Picture& picture, int stride);

/// The same of a channel.
FloatSamples everyNth(const Picture& picture, const PictureChannel& channel, int stride);

/// The same of a deep picture, in memory, with all its channels. Throws what reading rows throws.
std::shared_ptr<embedded::DeepSource> everyNth(DeepExrSource& deep, int stride);

}  // namespace drevintool
