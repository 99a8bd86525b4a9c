#pragma once

/// The aperture image of the demo: a heart cut from black card before a simple lens.

#include "demo/DemoPicture.h"

namespace drevintool {

/// As large as the largest kernel, so that it is read whole.
constexpr int kDemoApertureSide = 512;

/// R, G, B, A in [0, 1], square. A simple lens bends blue more than red, so that off its axis red's
/// heart and blue's lie on either side of green's. All are brighter toward the rim and pass the
/// same light, at any size: a colour that passed less would cover less of what is behind, and
/// lights would show through things before them. A is the mean of the three. The heart stands on
/// its head, since splatting turns a kernel's rows around.
DemoPicture makeDemoAperture(int side = kDemoApertureSide);

}  // namespace drevintool
