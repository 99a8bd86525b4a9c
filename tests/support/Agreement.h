#pragma once

/// When a rendered value agrees with the literal one.

#include <cmath>
#include <limits>

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

/// The difference in parts of what is allowed: NaN agrees with NaN and an infinity with itself (0),
/// neither with anything else (infinity).
inline double differenceInParts(float rendered, double literal) {
  const auto value = static_cast<double>(rendered);
  const bool same = literal == value || (std::isnan(literal) && std::isnan(value));
  if (same) return 0.0;
  if (!std::isfinite(literal) || !std::isfinite(value)) {
    return std::numeric_limits<double>::infinity();
  }
  return std::fabs(value - literal) / allowedDifference(literal);
}

inline bool agrees(float rendered, double literal) {
  return differenceInParts(rendered, literal) <= 1.0;
}

}  // namespace drevin::test
