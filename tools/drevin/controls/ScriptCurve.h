#pragma once

/// A number of a node's script that changes over frames.

#include <optional>
#include <string>

#include "controls/ControlCurve.h"

namespace drevintool {

struct ScriptCurve {
  ControlCurve curve;
  bool straightened = false;  ///< it is smooth between keys, where `curve` is straight
};

/// Reads "curve L x1 2.7 x48 24": before a value its frame (without one, the frame after the last
/// key's), before a key a letter for how it goes on to the next: K holds the value, L and i run in
/// a line, without a letter and with any other it is smooth. Slopes (s0.5) are of smooth keys.
/// Nothing if the text is no such curve, or its frames do not rise, or a number is not finite.
std::optional<ScriptCurve> parseScriptCurve(const std::string& text);

/// Such a text.
std::string scriptCurveText(const ControlCurve& curve);

}  // namespace drevintool
