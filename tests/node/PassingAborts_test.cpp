/// Aborts that are withdrawn while the node opens: an opening that saw one leaves nothing behind,
/// for what it made was cut short.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "node/NodeBench.h"
#include "node/TransformedScenes.h"
#include "node/WatchedImage.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

using DD::Image::Mask_RGBA;
using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr int width = transformedWidth;

/// Clears the abort at the end, whatever a test ends with.
class PassingAborts : public testing::Test {
 protected:
  ~PassingAborts() override {
    embedded::clearAbort();
    embedded::setThreadCount(0);
  }
};

bool hasPicture(const Drevin& node) {
  return node.picture().has(50, 0, width, Mask_RGBA, dvDeepMode::Both);
}

bool hasNothing(const Drevin& node) {
  return node.kernelBank().empty() && node.heroKernel().width == 0 && !hasPicture(node);
}

/// Whether an abort that stands while `step` runs on an open node is still known after it.
template <typename Step>
bool remembersAbortSeenIn(const Step& step) {
  NodeBench bench(transformedScene());
  embedded::RenderSession session(bench.node(), bench.options);
  EXPECT_FALSE(bench.drevin().openingAborted());
  embedded::requestAbort();
  step(bench.drevin());
  embedded::clearAbort();
  return bench.drevin().openingAborted();
}

TEST_F(PassingAborts, abortSeenWhileTheApertureIsDrawn_isNotForgotten) {
  EXPECT_TRUE(remembersAbortSeenIn([](Drevin& node) { node.makeHeroKernel(false); }));
}

TEST_F(PassingAborts, abortSeenWhileKernelsAreBuilt_isNotForgotten) {
  EXPECT_TRUE(remembersAbortSeenIn([](Drevin& node) { initializeKernelsThreaded(0, 1, &node); }));
}

TEST_F(PassingAborts, nextOpening_beginsAnew) {
  NodeBench bench(transformedScene());
  embedded::RenderSession session(bench.node(), bench.options);
  embedded::requestAbort();
  EXPECT_TRUE(bench.drevin().openingAborted());
  embedded::clearAbort();
  bench.drevin().initialize();
  EXPECT_FALSE(bench.drevin().openingAborted());
  EXPECT_FALSE(bench.drevin().kernelBank().empty());
}

/// The depth scan's first reader asks for an abort and reads on; the second withdraws it after a
/// while, in which the first has met it.
class AbortInTheScan {
 public:
  explicit AbortInTheScan(milliseconds pause) : pause_(pause) {}

  void read() {
    const int place = readers_++;
    if (place > 1) return;
    while (readers_ < 2)
      std::this_thread::yield();
    if (place == 0) {
      embedded::requestAbort();
      return;
    }
    while (!embedded::abortRequested())
      std::this_thread::yield();
    std::this_thread::sleep_for(pause_);
    embedded::clearAbort();
  }

 private:
  milliseconds pause_;
  std::atomic<int> readers_{0};
};

TEST_F(PassingAborts, scanCutShort_leavesNothing) {
  embedded::setThreadCount(2);
  bool dropped = false;
  // On a busy machine the first reader may be held up for longer than a pause.
  for (const int pause : {20, 200, 2000}) {
    NodeBench bench(transformedScene());
    AbortInTheScan abort{milliseconds(pause)};
    WatchedImage image(hostImage(transformedScene().image),
                       [&](int /*y*/, DD::Image::Channel /*z*/) { abort.read(); });
    ASSERT_TRUE(bench.connect(dvInput::image, &image));
    {
      const embedded::RenderSession session(bench.node(), bench.options);
      dropped = hasNothing(bench.drevin());
      EXPECT_TRUE(dropped || hasPicture(bench.drevin()));
    }
    bench.connect(dvInput::image, nullptr);
    if (dropped) break;
  }
  EXPECT_TRUE(dropped);
}

/// Aborts that come and go by themselves for as long as it lives.
class ComingAndGoing {
 public:
  explicit ComingAndGoing(unsigned seed)
      : thread_([this, seed] {
          Draw draw(seed);
          while (!stop_) {
            std::this_thread::sleep_for(microseconds(draw.whole(0, 200)));
            embedded::requestAbort();
            embedded::clearAbort();
          }
        }) {}
  ~ComingAndGoing() {
    stop_ = true;
    thread_.join();
  }
  ComingAndGoing(const ComingAndGoing&) = delete;
  ComingAndGoing& operator=(const ComingAndGoing&) = delete;

 private:
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

TEST_F(PassingAborts, abortsAtAnyTime_leaveNothingOrTheWholePicture) {
  embedded::setThreadCount(3);
  NodeBench bench(transformedScene());
  const embedded::RenderResult whole = bench.render();
  const float* expected = whole.image.planes.at(DD::Image::Chan_Red)->data() + 50 * width;
  constexpr unsigned openings = DREVIN_SANITIZED != 0 ? 10 : 60;
  for (unsigned i = 0; i < openings; ++i) {
    auto aborts = std::make_unique<ComingAndGoing>(i);
    const embedded::RenderSession session(bench.node(), bench.options);
    aborts.reset();
    if (bench.drevin().openingAborted()) {
      EXPECT_TRUE(hasNothing(bench.drevin())) << i;
      continue;
    }
    ASSERT_TRUE(hasPicture(bench.drevin())) << i;
    DD::Image::Row row(0, width);
    bench.drevin().picture().copy(50, 0, width, Mask_RGBA, dvDeepMode::Both, row);
    EXPECT_TRUE(std::equal(expected, expected + width, row[DD::Image::Chan_Red])) << i;
  }
}

}  // namespace
}  // namespace drevin::test
