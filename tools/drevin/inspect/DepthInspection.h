#pragma once

/// What the depth of a flat picture is like.

#include <nlohmann/json_fwd.hpp>

#include "depth/DepthPlane.h"

namespace drevintool {

/// Of a depth channel: the guessed "style" and "unit", each with its reason; the "background" (its
/// value, pixels and reason), null if there is none; "near", "far" and "median" of the distances in
/// scene units, in the guessed style, over the pixels that are no background; and "mixedPixels",
/// the number of those whose depth was averaged across an edge (see MixedEdges.h). `alpha` is null
/// or a plane of the same box.
nlohmann::ordered_json inspectDepth(const DepthPlane& depth, const DepthPlane* alpha);

}  // namespace drevintool
