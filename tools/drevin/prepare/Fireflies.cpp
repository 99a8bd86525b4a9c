#include "prepare/Fireflies.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace drevintool {
namespace {

// The largest of those that are numbers.
float largestOf(float red, float green, float blue) {
  float largest = -std::numeric_limits<float>::infinity();
  for (const float value : {red, green, blue}) {
    if (value > largest) largest = value;
  }
  return largest;
}

}  // namespace

bool dimColour(float& red, float& green, float& blue, float most) {
  const float largest = largestOf(red, green, blue);
  if (!(largest > most)) return false;
  const float factor = std::isinf(largest) ? 1.0F : most / largest;
  for (float* value : {&red, &green, &blue}) {
    if (!std::isnan(*value)) *value = std::min(*value * factor, most);
  }
  return true;
}

}  // namespace drevintool
