#pragma once

/// Dimming what is far brighter than it should be.

namespace drevintool {

/// Dims a colour whose largest component is above `most`: all components by one factor, so that the
/// largest becomes `most` and the hue stays. Infinite components become `most` and the others at
/// most that, for of their hue nothing is known; NaN stays. Returns whether it was brighter.
bool dimColour(float& red, float& green, float& blue, float most);

}  // namespace drevintool
