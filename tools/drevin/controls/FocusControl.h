#pragma once

/// Setting the node's focus to a distance that was found in the picture.

#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"

namespace drevintool {

/// The control that holds the focus distance.
constexpr const char* kFocusControl = "focalPlane";

/// Sets it, as by hand.
void setFocus(Node& node, float distance);

/// Throws ToolError (Usage) if one of the settings (NAME=VALUE) is of that control, which `option`
/// sets too.
void checkFocusNotSet(const std::vector<std::string>& settings, const std::string& option);

}  // namespace drevintool
