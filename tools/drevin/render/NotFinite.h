#pragma once

/// Colours that are not numbers, or infinite.

#include <cstddef>
#include <string>
#include <vector>

#include "picture/Picture.h"
#include "render/ChannelPlan.h"

namespace drevintool {

/// The number of pixels in which a channel that the node blurs is NaN or infinite: such a pixel
/// spoils all that its kernel reaches. `input` is the picture as the node sees it.
std::size_t notFinitePixels(const Picture& input, const std::vector<PlannedChannel>& plan);

/// One line about that number of pixels; empty if it is 0.
std::string notFiniteWarning(const Picture& input, std::size_t count);

}  // namespace drevintool
