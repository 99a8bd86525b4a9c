#pragma once

/// What a deep picture is like.

#include <nlohmann/json_fwd.hpp>

#include "deep/DeepExrSource.h"

namespace drevintool {

/// Reads all samples, a row at a time. Of the part: "samples" (all, most and median a pixel),
/// "emptyPixels", samples that are "points" or have a "thickness" (ZBack > Z), have it "inverted"
/// (ZBack < Z), pixels in which samples "overlap" (two share a stretch of depth, or a point lies
/// inside a sample), the "pieces" into which the node cuts the samples, nearest first, before it
/// blurs them (thick ones come to many, for each is cut at all that are nearer), pixels that are
/// "unsorted" in the file, samples with "alphaAboveOne" and with values that are "notFinite", the
/// least and the largest front as "near" and "far", the "medianNearest" of the nearest fronts of
/// the pixels with the "unit" that is guessed from it, the "style", the range of the farthest backs
/// of the pixels, and the channels with the type in the file (null if they are made) and range of
/// each. Throws ToolError (InputUnreadable) with one line that names the
/// file.
nlohmann::ordered_json inspectDeep(DeepExrSource& deep);

}  // namespace drevintool
