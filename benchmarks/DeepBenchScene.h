#pragma once

/// Deep pictures that the benchmarks blur.

#include "BenchScene.h"
#include "support/LiteralDeepFrame.h"

namespace drevin::bench {

/// The uniform scene with `samples` half transparent samples in every pixel at and behind its
/// depth, points or thick ones that overlap, farthest first.
test::LiteralDeepScene deepScene(int width, int height, int blur, int samples, bool thick);

}  // namespace drevin::bench
