#pragma once

/// Turns the table of controls into the host's knobs.

#include "DDImage/Knobs.h"
#include "node/DrevinSettings.h"

namespace drevin {

/// Makes (or stores) every control of the table in order, each bound to its field of `settings`.
void makeControlKnobs(DD::Image::Knob_Callback f, DrevinSettings& settings);

}  // namespace drevin
