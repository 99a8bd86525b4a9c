#include "controls/ScriptText.h"

#include <algorithm>

#include "controls/ScriptCurve.h"
#include "terminal/NumberText.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

// Bare where it can be read back so, else in quotes.
std::string quotedIfNeeded(const std::string& text) {
  const std::string special = " \t\r\n;\"\\{}[]$#";
  if (!text.empty() && text.find_first_of(special) == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\' || c == '[' || c == '$') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

std::string numbersText(const Knob& knob) {
  if (knob.components() == 1) return numberText(knob.get_value());
  std::string text;
  for (int i = 0; i < knob.components(); ++i)
    text += (i == 0 ? "" : " ") + numberText(knob.get_value(i));
  return "{" + text + "}";
}

std::string curvesText(const std::vector<ControlCurve>& curves) {
  std::string text;
  for (const ControlCurve& curve : curves) {
    text += text.empty() ? "" : " ";
    text += curve.varies() ? "{" + scriptCurveText(curve) + "}" : numberText(curve.at(0.0));
  }
  return "{" + text + "}";
}

std::string maskText(const Knob& knob) {
  std::string text = knob.valueText();
  if (text.find(',') == std::string::npos) return quotedIfNeeded(text);
  std::replace(text.begin(), text.end(), ',', ' ');
  return "{" + text + "}";
}

std::string valueText(const Knob& knob) {
  if (knob.type() == Knob::Type::Mask) return maskText(knob);
  const bool numbers = knob.type() == Knob::Type::Integer || knob.type() == Knob::Type::Real;
  return numbers ? numbersText(knob) : quotedIfNeeded(knob.valueText());
}

}  // namespace

std::string nodeScript(const Node& node, const ControlCurves& curves, const std::string& name) {
  std::string text = std::string(node.description().name) + " {\n";
  for (const auto& knob : node.knobs()) {
    if (knob->name().empty()) continue;
    const auto keyed = curves.find(knob->name());
    if (keyed != curves.end()) {
      text += " " + knob->name() + " " + curvesText(keyed->second) + "\n";
    } else if (knob->valueText() != knob->defaultText()) {
      text += " " + knob->name() + " " + valueText(*knob) + "\n";
    }
  }
  return text + " name " + quotedIfNeeded(name) + "\n}\n";
}

}  // namespace drevintool
