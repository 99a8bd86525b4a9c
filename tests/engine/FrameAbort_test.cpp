/// A frame that is no longer wanted ends soon, at whatever moment, and harms nothing that follows.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "engine/EngineFrame.h"
#include "engine/FrameScenes.h"
#include "engine/ThreadParallel.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr int attempts = DREVIN_SANITIZED != 0 ? 5 : 40;

/// Several groups, slices, tiles that are transformed, and direct splats.
LiteralScene sceneOfAllStages() {
  LiteralScene scene = stagedScene(24.0F, 3, 180, 140);
  scene.settings.chromaticAberration = 4.0F;
  return scene;
}

/// Items of the whole frame.
int itemsOf(const EngineFrame& frame, const EngineLines& lines, dvTileChoice choice) {
  ThreadParallel parallel(1);
  frame.make(lines, parallel, choice);
  return parallel.begun();
}

TEST(FrameAbort, atAnyItem_endsWithWhatHasBegun) {
  const LiteralScene scene = sceneOfAllStages();
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  Draw draw(21);
  for (const dvTileChoice choice : {dvTileChoice::Everything, dvTileChoice::ByCost}) {
    const int all = itemsOf(frame, lines, choice);
    for (int i = 0; i < attempts; ++i) {
      const int items = draw.whole(1, all);
      ThreadParallel parallel(draw.whole(1, 6));
      parallel.abortAfter(items);
      frame.make(lines, parallel, choice);
      EXPECT_TRUE(parallel.aborted());
      EXPECT_GE(parallel.begun(), items);
      EXPECT_LE(parallel.begun(), items + parallel.workers());
    }
  }
}

TEST(FrameAbort, fromAnotherThreadAtAnyTime_endsTheFrame) {
  const LiteralScene scene = sceneOfAllStages();
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  const auto begin = std::chrono::steady_clock::now();
  const dvFramePlanes whole = frame.make(lines, dvTileChoice::Everything);
  const auto taken = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  Draw draw(22);
  int cutShort = 0;
  for (int i = 0; i < attempts; ++i) {
    ThreadParallel parallel(4);
    // Some far sooner: a frame that another program held up seems to take long.
    const auto longest = static_cast<int>(taken.count()) / (1 + i % 3 * 10);
    const std::chrono::microseconds pause(draw.whole(0, longest));
    std::thread interrupter([&] {
      std::this_thread::sleep_for(pause);
      parallel.abort();
    });
    const dvFramePlanes planes = frame.make(lines, parallel, dvTileChoice::Everything);
    interrupter.join();
    cutShort += sameBits(planes, whole) ? 0 : 1;
  }
  EXPECT_GT(cutShort, 0);
  EXPECT_TRUE(sameBits(frame.make(lines, dvTileChoice::Everything), whole));
}

}  // namespace
}  // namespace drevin::test
