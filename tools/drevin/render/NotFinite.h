#pragma once

/// Values that are not numbers, or infinite, in the pictures of a render and in its result.

#include <cstddef>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/OutputPicture.h"
#include "picture/Picture.h"
#include "render/ChannelPlan.h"

namespace drevintool {

/// The number of pixels in which a channel that the node blurs is NaN or infinite: such a pixel
/// spoils all that its kernel reaches. `input` is the picture as the node sees it.
std::size_t notFinitePixels(const Picture& input, const std::vector<PlannedChannel>& plan);

/// One line about that number of pixels; empty if it is 0.
std::string notFiniteWarning(const Picture& input, std::size_t count);

/// One line with the number of pixels of an aperture image in use that are not finite in a channel
/// that a rendered one is blurred by; empty if there are none. A single one of them spoils all
/// kernels.
std::string notFiniteKernelWarning(const Picture& kernel, const Node& node,
                                   const std::vector<PlannedChannel>& plan);

/// One line with the number of pixels that are not finite in the mattes that the controls pick;
/// empty if there are none.
std::string notFiniteMattesWarning(const Picture& mattes, const Node& node);

/// One line with the number of rendered values that are not finite; empty if there are none. For
/// results of pictures that are finite themselves.
std::string notFiniteResultWarning(const OutputPicture& output,
                                   const std::vector<PlannedChannel>& plan);

}  // namespace drevintool
