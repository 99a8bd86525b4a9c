#pragma once

/// Which channel of a picture holds its depth.

#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"

namespace drevintool {

/// The channel that the node's control depthChannel picks, or null if the picture lacks it or the
/// control picks none.
const PictureChannel* chosenDepth(const Picture& picture, const Node& node);

/// The channel that a node takes whose controls are as made; null if the picture lacks it.
const PictureChannel* usualDepth(const Picture& picture);

/// All channels that could be a depth by their name: no whole numbers, named Z, depth, zdepth,
/// distance, dist or zbuffer in any letter case, or in a layer whose name begins with "depth". A Z
/// beside an X in one layer is part of a vector.
std::vector<const PictureChannel*> possibleDepths(const Picture& picture);

/// The names of those of a file, for --set depthChannel=NAME, from its header alone; beside a deep
/// part those of its samples too. Throws ToolError (InputUnreadable).
std::vector<std::string> depthNamesOf(const std::string& path);

}  // namespace drevintool
