#pragma once

/// Mattes for the demo scene: where to defocus less, where lights may bloom, where colours part.

#include "demo/DemoCamera.h"
#include "demo/DemoPicture.h"

namespace drevintool {

/// Planes of `scene`'s size with values in [0, 1]:
///   matte.defocus    0 on the neon sign, which thus stays readable, 1 elsewhere
///   matte.bloom      1 on things brighter than white, 0 below half of it
///   matte.chromatic  0 in the middle of the picture, 1 in its corners, as lenses do
/// `scene` must hold R, G, B and Z as renderDemoScene makes them with the same camera.
DemoPicture makeDemoMattes(const DemoPicture& scene, const DemoCamera& camera);

}  // namespace drevintool
