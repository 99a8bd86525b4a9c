#include "demo/DemoShelter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "DemoRays.h"
#include "demo/DemoNoise.h"
#include "demo/DemoRaindrops.h"

namespace drevintool {
namespace {

using testing::towards;

TEST(DemoRaindrops, drops_coverAPartOfThePaneAndFadeAtTheirRims) {
  int wet = 0;
  int rims = 0;
  constexpr int kPlaces = 200;
  for (int i = 0; i < kPlaces * kPlaces; ++i) {
    const int across = i % kPlaces;
    const int up = i / kPlaces;
    const auto drop = demoRaindrop(across * 0.0023, up * 0.0023);
    if (!drop) continue;
    ++wet;
    ASSERT_GE(drop->cover, 0.0);
    ASSERT_LE(drop->cover, 1.0);
    ASSERT_LE(std::hypot(drop->across, drop->up), 1.1);
    if (drop->cover < 0.5) ++rims;
  }
  EXPECT_GT(wet, kPlaces * kPlaces / 50);
  EXPECT_LT(wet, kPlaces * kPlaces / 2);
  EXPECT_GT(rims, 0);
  EXPECT_LT(rims, wet / 2);
}

const DemoBackdrop kGrey = [](const DemoVector&) { return DemoVector{0.2, 0.2, 0.2}; };

TEST(DemoShelter, dryGlass_takesAThirdToAHalfOfTheLight) {
  int dry = 0;
  for (int i = 0; i < 400; ++i) {
    const double x = 0.4 + 0.9 * demoHash(i, 1);
    const double y = 1.0 + 0.9 * demoHash(i, 2);
    const auto pane = traceShelterPane(towards(x, y, kDemoPaneDepth), kGrey);
    ASSERT_TRUE(pane.has_value());
    ASSERT_GT(pane->alpha, 0.0);
    ASSERT_LT(pane->alpha, 1.0);
    ASSERT_GE(pane->light.x, 0.0);
    if (demoRaindrop(x, y)) continue;
    ++dry;
    EXPECT_GE(pane->alpha, 0.3);
    EXPECT_LE(pane->alpha, 0.5);
  }
  EXPECT_GT(dry, 200);
}

TEST(DemoShelter, drop_showsWhatIsOnTheOtherSideOfIt) {
  int drops = 0;
  for (int i = 0; i < 4000; ++i) {
    const double x = 0.4 + 0.9 * demoHash(i, 1);
    const double y = 1.0 + 0.9 * demoHash(i, 2);
    const auto drop = demoRaindrop(x, y);
    if (!drop || drop->across < 0.2) continue;
    const DemoRay here = towards(x, y, kDemoPaneDepth);
    double seen = here.along.x;
    traceShelterPane(here, [&seen](const DemoVector& along) {
      seen = along.x;
      return DemoVector{};
    });
    EXPECT_LT(seen, here.along.x);  // right of the drop's middle, left of it in the scene
    ++drops;
  }
  EXPECT_GT(drops, 20);
}

TEST(DemoShelter, placesBesideIt_meetNeitherGlassNorFrame) {
  for (const DemoRay& ray : {towards(0.1, 1.3, 5.6), towards(0.8, 2.1, 5.6)}) {
    EXPECT_FALSE(traceShelterPane(ray, kGrey).has_value());
    EXPECT_TRUE(std::isinf(traceShelterFrame(ray).t));
    EXPECT_FALSE(nearShelter(ray, 0.001));
  }
}

TEST(DemoShelter, frame_isBrightAndAtTheGlass) {
  double most = 0.0;
  for (int i = 0; i < 1000; ++i) {
    const double x = 0.301 + 0.001 * i;
    const DemoHit hit = traceShelterFrame(towards(x, 1.96, 5.57));
    ASSERT_NEAR(hit.t, kDemoPaneDepth, 0.05) << x;
    most = std::max(most, luminance(hit.radiance));
  }
  EXPECT_GT(most, 5.0);
}

}  // namespace
}  // namespace drevintool
