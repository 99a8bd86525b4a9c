#pragma once

/// A point to focus on at one frame, of several between which the focus is pulled.

#include <vector>

#include "depth/FocusPoint.h"

namespace drevintool {

struct FocusKey {
  int frame = 0;
  FocusPoint point;
};

/// Reads texts "x,y@FRAME" or "x,y,top@FRAME" and sorts them by their frames. Throws ToolError
/// (Usage) for anything else, and for two of one frame.
std::vector<FocusKey> parseFocusKeys(const std::vector<std::string>& texts);

}  // namespace drevintool
