#pragma once

/// The unit of a scene, guessed from how far away things are.

#include <string>

namespace drevintool {

/// The unit, as the node's control worldScale names it, in which the median distance of a picture
/// is that of things which are usually photographed, 0.3 to 30 m: m up to 30, cm up to 3000, mm up
/// to 30000. Empty beyond, and for what is below 0.3 or no number.
std::string guessUnit(float medianDistance);

}  // namespace drevintool
