#pragma once

/// What the depth of a flat picture is like.

#include <nlohmann/json_fwd.hpp>

#include "depth/DepthCodes.h"
#include "picture/Picture.h"

namespace drevintool {

/// The guessed unit of a scene whose median distance is this one: {"guess", "why"}, or null.
nlohmann::ordered_json unitJson(float median);

/// Of a depth channel, over the pixels that its part has: the guessed "style" and "unit", each with
/// its reason, the style also with that of the render's "control"; the "background" that a render
/// in the control's style takes (its value, pixels and reason, and the "others" that have codes),
/// null if there is none; "near", "far" and "median" of the distances in scene units, in the
/// guessed style, over the pixels that are no background; and "mixedPixels", the number of those
/// whose depth was averaged across an edge (see MixedEdges.h).
nlohmann::ordered_json inspectDepth(const Picture& picture, const PictureChannel& channel,
                                    DepthStyle control);

}  // namespace drevintool
