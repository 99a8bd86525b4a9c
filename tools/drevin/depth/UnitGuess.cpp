#include "depth/UnitGuess.h"

namespace drevintool {

std::string guessUnit(float medianDistance) {
  if (!(medianDistance >= 0.3F) || !(medianDistance <= 30000.0F)) return {};
  if (medianDistance <= 30.0F) return "m";
  return medianDistance <= 3000.0F ? "cm" : "mm";
}

}  // namespace drevintool
