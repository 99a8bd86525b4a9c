#include "controls/NodeVersion.h"

namespace drevintool {

std::string nodeVersion(const Node& node) {
  for (const auto& knob : node.knobs()) {
    if (knob->kind() == "Text_knob" && knob->label() == "Version") return knob->valueText();
  }
  return {};
}

}  // namespace drevintool
