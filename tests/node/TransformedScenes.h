#pragma once

/// Scenes for the host's ways that meet every stage of the engine: tiles that are transformed,
/// splats beside them, and stretches that are made anew.

#include "node/NodeBench.h"
#include "support/LiteralDeepNode.h"

namespace drevin::test {

/// Blurs of which transforms make a part, and blurs that are too small for any; px.
constexpr float transformedBlur = 44.0F;
constexpr float directBlur = 18.0F;

constexpr int transformedWidth = 170;
constexpr int transformedHeight = 140;

/// Lights, three slices, radii that few and many splats share.
LiteralScene transformedScene(float blur = transformedBlur);

/// The same with bloom, three mattes and a chromatic shift.
LiteralScene transformedEffects(float blur = transformedBlur);

/// Panes and things apart before a wall, with strips of empty pixels and a hole in the wall that is
/// wider than the blur reaches: nothing covers its middle.
LiteralDeepScene transformedDeepScene(float blur = transformedBlur);

/// Whether transforms had a part in the picture that a node makes of the scene when it opens.
///
/// A transform rounds by all that its tile holds. So another colour at one pixel changes bits
/// farther away than any splat of that pixel reaches if, and only if, its tile was transformed.
bool showsTransforms(const LiteralScene& scene);
bool showsTransforms(const LiteralDeepScene& scene);

}  // namespace drevin::test
