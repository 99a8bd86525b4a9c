#pragma once

/// Colours that are not numbers, or infinite.

#include <string>
#include <vector>

#include "picture/Picture.h"
#include "render/ChannelPlan.h"

namespace drevintool {

/// One line with the number of pixels in which a channel that the node blurs is NaN or infinite:
/// such a pixel spoils all that its kernel reaches. Empty if there is none.
std::string notFiniteWarning(const Picture& input, const std::vector<PlannedChannel>& plan);

}  // namespace drevintool
