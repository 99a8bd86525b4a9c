#pragma once

/// Scenes of several tiles: large enough that transforms, borders of tiles and direct splats meet.

#include "support/LiteralFrame.h"

namespace drevin::test {

/// A picture of soft shapes and noise with some lights, everywhere blurred by `blur` px; one slice.
LiteralScene farScene(float blur, int width = 400, int height = 300);

/// The same with depths from in front of the focus region to behind it.
LiteralScene rampScene(float blur, int slices, int width = 400, int height = 300);

/// Large flat areas at a few depths, so that tiles hold some populous radii and some stragglers.
LiteralScene stagedScene(float blur, int slices, int width = 400, int height = 300);

/// A far scene whose left is of one brightness and its right of another, with the border within
/// tiles.
LiteralScene brightSide(float bright, float dark);

/// Uses what a splat may have at once: bloom, three mattes, a chromatic shift.
void addMattesAndShift(LiteralScene& scene);

}  // namespace drevin::test
