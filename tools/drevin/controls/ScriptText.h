#pragma once

/// A node as the host saves it, for pasting.

#include <string>

#include "EmbeddedHost/Node.h"
#include "controls/ControlChanges.h"

namespace drevintool {

/// "Class {", a line for each control whose value differs from its default or that is in `curves`,
/// " name NAME" and "}". Reading it gives the same values.
std::string nodeScript(const Node& node, const ControlCurves& curves, const std::string& name);

}  // namespace drevintool
