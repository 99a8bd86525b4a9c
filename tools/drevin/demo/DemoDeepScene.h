#pragma once

/// The demo scene as a deep picture, with glass and steam that a flat one cannot hold.

#include "demo/DemoCamera.h"
#include "demo/DemoDeepPicture.h"
#include "demo/DemoPicture.h"
#include "demo/DemoScene.h"

namespace drevintool {

/// The depth of the sky's samples, m: finite, so that a lens blurs them as what is far away.
constexpr double kDemoSkyDepth = 10000.0;

struct DemoPictures {
  DemoPicture flat;  ///< as renderDemoScene makes it
  DemoDeepPicture deep;
};

/// The scene, flat and deep, from the same rays. Every deep pixel ends in a sample of alpha 1; at
/// an edge each surface has the share of the pixel that it covers. The same values whatever the
/// number of threads; `threads` as for forDemoRows.
DemoPictures renderDemoPictures(const DemoCamera& camera, int width = kDemoWidth,
                                unsigned threads = 0);

}  // namespace drevintool
