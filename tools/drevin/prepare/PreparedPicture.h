#pragma once

/// A flat picture with mended depth and colours.

#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"
#include "prepare/PictureFixes.h"

namespace drevintool {

struct PreparedPicture {
  Picture picture;
  std::vector<std::string> notes;   ///< a line for each fix with the number of pixels it changed
  std::optional<float> background;  ///< the distance in scene units that background got, if any
};

/// A picture with samples of its own where the fixes ask for it. Averaged edges are mended before
/// the background, which is that of the picture as it was (see findBackground).
///
/// Fixes of the depth are for the channel, and in the style, that the node is set to; without
/// `withDepth`, or without such a channel, there are none. Colours are R, G and B; without all
/// three they stay as they are. The mended channels are floats, all others are shared with
/// `picture`.
PreparedPicture preparedPicture(const Picture& picture, const Node& node, const PictureFixes& fixes,
                                bool withDepth);

}  // namespace drevintool
