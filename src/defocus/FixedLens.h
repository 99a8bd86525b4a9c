#pragma once

/// A lens whose modes the compiler knows: a loop over depths then has no branches, and is made for
/// many depths at once.

#include <type_traits>

#include "defocus/DepthToBlur.h"

namespace drevin {

/// Its modes hide those of the lens that it is made of, which count the same.
template <bool RealWorldLens, dvDepthStyle Style, dvFalloff Falloff>
struct dvFixedLens : dvLens {
  explicit dvFixedLens(const dvLens& lens) : dvLens(lens) {}

  static constexpr bool realWorldLens = RealWorldLens;
  static constexpr dvDepthStyle depthStyle = Style;
  static constexpr dvFalloff falloff = Falloff;
};

/// Calls visit(lens) with the dvFixedLens of the lens's modes; values that name none count as in
/// normaliseDepth and artisticCoc.
template <typename Visit>
void withFixedModes(const dvLens& lens, const Visit& visit) {
  const auto ofStyle = [&](auto style) {
    constexpr dvDepthStyle fixed = decltype(style)::value;
    if (lens.realWorldLens) {
      visit(dvFixedLens<true, fixed, dvFalloff::Linear>(lens));
    } else if (lens.falloff == dvFalloff::Quadratic) {
      visit(dvFixedLens<false, fixed, dvFalloff::Quadratic>(lens));
    } else {
      visit(dvFixedLens<false, fixed, dvFalloff::Linear>(lens));
    }
  };
  if (lens.depthStyle == dvDepthStyle::Reciprocal) {
    ofStyle(std::integral_constant<dvDepthStyle, dvDepthStyle::Reciprocal>{});
  } else {
    ofStyle(std::integral_constant<dvDepthStyle, dvDepthStyle::Real>{});
  }
}

}  // namespace drevin
