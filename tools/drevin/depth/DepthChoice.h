#pragma once

/// Which channel of a picture holds its depth.

#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"

namespace drevintool {

/// The channel that the node's control depthChannel picks, or null if the picture lacks it or the
/// control picks none.
const PictureChannel* chosenDepth(const Picture& picture, const Node& node);

/// All channels that could be a depth by their name: no whole numbers, named Z, depth, zdepth,
/// distance, dist or zbuffer in any letter case, or in a layer whose name begins with "depth". A Z
/// beside an X in one layer is part of a vector.
std::vector<const PictureChannel*> possibleDepths(const Picture& picture);

}  // namespace drevintool
