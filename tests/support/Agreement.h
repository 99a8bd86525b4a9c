#pragma once

/// When a rendered value agrees with the literal one.

#include <cmath>

#include "support/LiteralFrame.h"

namespace drevin::test {

/// A rendered value a agrees with the literal value b within absolute + relative * |b|.
struct AgreementBound {
  double absolute = 1e-5;
  double relative = 1e-4;
};
constexpr AgreementBound agreementBound{};

inline double allowedDifference(double literal) {
  return agreementBound.absolute + agreementBound.relative * std::fabs(literal);
}

/// Whether the value is well-conditioned. Where weights nearly cancel, or where a light far
/// brighter than the result is all but hidden, rounding alone moves it by more than the bound.
inline bool isComparable(const LiteralValue& literal) {
  return literal.settled &&
         (!std::isfinite(literal.value) || literal.slack <= allowedDifference(literal.value));
}

/// NaN agrees with NaN, an infinity with itself, the rest within the bound.
inline bool agrees(float rendered, double literal) {
  const auto value = static_cast<double>(rendered);
  if (std::isnan(literal) || std::isnan(value)) {
    return std::isnan(literal) && std::isnan(value);
  }
  if (std::isinf(literal) || std::isinf(value)) {
    return literal == value;
  }
  return std::fabs(value - literal) <= allowedDifference(literal);
}

}  // namespace drevin::test
