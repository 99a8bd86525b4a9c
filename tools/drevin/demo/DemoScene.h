#pragma once

/// The demo scene: a wet street at night, someone under an umbrella, lights near and far.

#include "demo/DemoCamera.h"
#include "demo/DemoPicture.h"

namespace drevintool {

constexpr int kDemoWidth = 960;

/// The height of a picture of that width: 16 to 9, at least 1.
int demoHeight(int width);

/// R, G, B (linear, lights far above 1), A (1) and Z (m along the view, infinity for the sky).
/// Colours are averages over a pixel; a depth is that of one thing in it: the brightest light if
/// there is one, else what lies in its middle. The same values whatever the number of threads.
DemoPicture renderDemoScene(const DemoCamera& camera, int width = kDemoWidth);

}  // namespace drevintool
