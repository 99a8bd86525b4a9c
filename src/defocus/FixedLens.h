#pragma once

/// A lens whose modes the compiler knows: a loop over depths then has no branches, and is made for
/// many depths at once.

#include <type_traits>

#include "defocus/DepthToBlur.h"

namespace drevin {

template <bool RealWorldLens, dvDepthStyle Style, dvFalloff Falloff>
class dvFixedLens {
 public:
  /// `lens` is one of these modes.
  explicit dvFixedLens(const dvLens& lens) : lens_(lens) {}

  /// The lens, with its modes as constants.
  dvLens get() const {
    dvLens lens = lens_;
    lens.realWorldLens = RealWorldLens;
    lens.depthStyle = Style;
    lens.falloff = Falloff;
    return lens;
  }

 private:
  dvLens lens_;
};

/// Calls visit(fixed) with the dvFixedLens of the lens's modes; values that name none count as in
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
