#pragma once

/// The aperture image of the demo: a heart cut from black card before a simple lens.

#include "DemoPicture.h"

namespace drevintool {

/// As large as the largest kernel, so that it is read whole.
constexpr int kDemoApertureSide = 512;

/// R, G, B, A in [0, 1], square. A simple lens bends blue more than red, so red's heart is the
/// largest and blue's the smallest; all are brighter toward the rim. A is the largest of the three.
/// The heart stands on its head, since splatting turns a kernel's rows around.
DemoPicture makeDemoAperture(int side = kDemoApertureSide);

}  // namespace drevintool
