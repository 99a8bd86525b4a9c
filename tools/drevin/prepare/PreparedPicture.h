#pragma once

/// A flat picture with mended depth and colours.

#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"
#include "prepare/PictureFixes.h"

namespace drevintool {

/// A picture with samples of its own where the fixes ask for it, and one line for each fix with the
/// number of pixels that it changed. Averaged edges are mended before the background.
///
/// Fixes of the depth are for the channel, and in the style, that the node is set to; without
/// `withDepth`, or without such a channel, there are none. Colours are R, G and B; without all
/// three they stay as they are. The mended channels are floats, all others are shared with
/// `picture`.
Picture preparedPicture(const Picture& picture, const Node& node, const PictureFixes& fixes,
                        bool withDepth, std::vector<std::string>& notes);

}  // namespace drevintool
