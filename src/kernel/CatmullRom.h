#pragma once

/// The Catmull-Rom cubic, the one interpolation rule of kernel images.

namespace drevin {

/// Value between the samples p1 and p2:
///
///   v = p1 + t/2 * ((p2 - p0) + t * ((2 p0 - 5 p1 + 4 p2 - p3) + t * (3 (p1 - p2) + p3 - p0)))
///
///   p0..p3  four consecutive samples   any
///   t       place from p1 to p2        [0, 1)
///   v       not limited: it may overshoot the samples
///
/// Fails to: NaN or infinity where a sample or t is not finite.
/// Order: float, in exactly this nesting; the order is behaviour.
/// Laws: t = 0 gives p1; equal samples give that value. On an image the rule is used separably,
/// first down the four columns, then across the results.   Tests: CatmullRom_test.cpp
inline float catmullRom(float p0, float p1, float p2, float p3, float t) {
  return p1 + 0.5F * t *
                  ((p2 - p0) + t * ((2.0F * p0 - 5.0F * p1 + 4.0F * p2 - p3) +
                                    t * (3.0F * (p1 - p2) + p3 - p0)));
}

}  // namespace drevin
