#pragma once

/// The controls that pick a matte.

#include <vector>

#include "EmbeddedHost/Node.h"

namespace drevintool {

/// The node's input that a control picks a channel of: that of the kernel's stand-in channel is
/// listed with the mattes, but is one of the aperture image.
int sourceInput(const DD::Image::Knob& knob);

/// In the order of the panel.
std::vector<const DD::Image::Knob*> matteControls(const Node& node);

/// Whether a control that picks a channel has picked one.
bool isChosen(const DD::Image::Knob* knob);

}  // namespace drevintool
