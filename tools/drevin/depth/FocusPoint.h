#pragma once

/// Focus on what stands at a point of the picture.

#include <optional>
#include <string>

#include "EmbeddedHost/Node.h"
#include "deep/DeepExrSource.h"
#include "picture/Picture.h"

namespace drevintool {

/// A pixel of the format. Rows run upward from the bottom row, as the host's viewers show them, or
/// downward from the top row, as picture files have them.
struct FocusPoint {
  int x = 0;
  int y = 0;
  bool fromTop = false;
  std::string text;  ///< as it was given
};

/// Reads "x,y", or "x,y,top" for rows that run downward. Throws ToolError (Usage) for anything
/// else.
FocusPoint parseFocusPoint(const std::string& text);

/// The distance in scene units to focus on: the median over the 5 x 5 pixels around the point that
/// the picture has and that are no background (see findBackground); the smaller of the two middle
/// ones. Nothing if there is only background. Read are the node's depth channel in the node's depth
/// style. Throws ToolError: Usage if the point lies outside the picture's box; InputUnreadable if
/// the picture lacks the channel.
std::optional<float> focusDistance(const Picture& picture, const Node& node,
                                   const FocusPoint& point);

/// The same for a deep picture, in which the depth of a pixel is that of its front surface: of the
/// nearest sample with which the coverage (alphas laid over one another, nearest first) comes to
/// half or more; its back if the node's depth channel is deep.back. A pixel that comes to less is
/// background, and so are codes (see DepthCodes). Throws what reading rows throws, too.
std::optional<float> focusDistance(DeepExrSource& deep, const Node& node, const FocusPoint& point);

/// The distance, if a lens can focus on it. Throws ToolError (Usage) with one line and the remedy
/// if there is none, or if it is not finite and above 0.
float checkedFocus(std::optional<float> distance, const FocusPoint& point);

/// "focalPlane 2.71 at 640,360 (origin bottom left, as viewers of the host show)".
std::string focusLine(float distance, const FocusPoint& point);

}  // namespace drevintool
