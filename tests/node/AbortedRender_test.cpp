/// Aborts of whole renders: the node ends at whatever moment it is told to, and a render that
/// follows is right.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <set>
#include <thread>

#include "node/DeepBench.h"
#include "node/TransformedScenes.h"
#include "support/Draw.h"

namespace drevin::test {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr int width = transformedWidth;
constexpr int height = transformedHeight;
constexpr int attempts = DREVIN_SANITIZED != 0 ? 6 : 15;

/// Clears the abort at the end, whatever a test ends with.
class AbortedRender : public testing::Test {
 protected:
  ~AbortedRender() override {
    embedded::clearAbort();
    embedded::setThreadCount(0);
  }
};

/// Asks for an abort after a while, from a thread of its own.
class Interrupter {
 public:
  explicit Interrupter(microseconds pause)
      : thread_([pause] {
          std::this_thread::sleep_for(pause);
          embedded::requestAbort();
        }) {}
  ~Interrupter() { thread_.join(); }
  Interrupter(const Interrupter&) = delete;
  Interrupter& operator=(const Interrupter&) = delete;

 private:
  std::thread thread_;
};

bool samePictures(const embedded::Image& a, const embedded::Image& b) {
  if (a.planes.size() != b.planes.size()) return false;
  for (const auto& [channel, plane] : a.planes) {
    const embedded::Plane& other = *b.planes.at(channel);
    if (plane->size() != other.size()) return false;
    if (std::memcmp(plane->data(), other.data(), other.size() * sizeof(float)) != 0) return false;
  }
  return true;
}

/// A finished render, and how long it took.
struct Whole {
  embedded::Image image;
  microseconds taken{0};
};

Whole finished(NodeBench& bench) {
  const auto begin = steady_clock::now();
  const embedded::RenderResult result = bench.render();
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_FALSE(result.image.planes.empty());
  return {result.image, std::chrono::duration_cast<microseconds>(steady_clock::now() - begin)};
}

/// Renders that are aborted at random times, each followed by one that is not.
void expectAbortsWithoutHarm(NodeBench& bench, unsigned seed) {
  const Whole whole = finished(bench);
  Draw draw(seed);
  int cutShort = 0;
  for (int i = 0; i < attempts; ++i) {
    bench.options.threads = static_cast<unsigned>(draw.whole(1, 4));
    {
      // Some far sooner: a render that another program held up seems to take long.
      const auto longest = static_cast<int>(whole.taken.count()) / (1 + i % 3 * 10);
      const Interrupter interrupter(microseconds(draw.whole(0, longest)));
      const embedded::RenderResult result = bench.render();
      const bool aborted = result.status == embedded::RenderStatus::Aborted;
      EXPECT_NE(result.status, embedded::RenderStatus::Error);
      EXPECT_EQ(result.image.planes.empty(), aborted);
      EXPECT_TRUE(aborted || samePictures(result.image, whole.image));
      cutShort += aborted ? 1 : 0;
    }
    embedded::clearAbort();
    ASSERT_TRUE(samePictures(bench.render().image, whole.image)) << "after abort " << i;
  }
  EXPECT_GT(cutShort, 0);
}

TEST_F(AbortedRender, flatAtAnyTime_leavesTheNextRenderRight) {
  for (const unsigned processors : {1U, 4U}) {
    embedded::setThreadCount(processors);
    NodeBench bench(transformedScene());
    expectAbortsWithoutHarm(bench, processors);
  }
}

TEST_F(AbortedRender, mattesAndShiftAtAnyTime_leaveTheNextRenderRight) {
  embedded::setThreadCount(3);
  NodeBench bench(transformedEffects());
  expectAbortsWithoutHarm(bench, 7);
}

TEST_F(AbortedRender, deepAtAnyTime_leavesTheNextRenderRight) {
  for (const bool apart : {false, true}) {
    embedded::setThreadCount(3);
    DeepBench bench(transformedDeepScene());
    bench.node().set("integrateFrontAndBackSeperately", apart ? 1.0 : 0.0);
    expectAbortsWithoutHarm(bench.node(), apart ? 5 : 6);
  }
}

/// Aborts as soon as a stage is announced; the names of all stages that were.
std::set<std::string> abortAtStage(NodeBench& bench, const std::string& stage) {
  std::set<std::string> begun;
  bench.options.progress = [&](const embedded::Progress& progress) {
    begun.insert(progress.stage);
    if (progress.stage == stage) embedded::requestAbort();
  };
  const embedded::RenderResult result = bench.render();
  bench.options.progress = nullptr;
  EXPECT_EQ(result.status, embedded::RenderStatus::Aborted) << stage;
  EXPECT_TRUE(result.image.planes.empty());
  embedded::clearAbort();
  return begun;
}

/// An abort in a stage of the opening is the end: no later stage begins.
void expectNoStageAfterAnAbort(NodeBench& bench) {
  const Whole whole = finished(bench);
  const std::vector<std::string> stages{"Validate", "Aperture", "Size estimate",
                                        "Kernels",  "Defocus",  "Rows"};
  for (std::size_t i = 0; i < stages.size(); ++i) {
    const std::set<std::string> begun = abortAtStage(bench, stages[i]);
    for (std::size_t j = 0; j < stages.size(); ++j)
      EXPECT_EQ(begun.count(stages[j]), j <= i ? 1U : 0U) << stages[j] << " after " << stages[i];
    EXPECT_TRUE(samePictures(bench.render().image, whole.image)) << "after " << stages[i];
  }
}

TEST_F(AbortedRender, flatInAnyStage_beginsNoFurther) {
  NodeBench bench(transformedScene());
  expectNoStageAfterAnAbort(bench);
}

TEST_F(AbortedRender, deepInAnyStage_beginsNoFurther) {
  DeepBench bench(transformedDeepScene());
  expectNoStageAfterAnAbort(bench.node());
}

TEST_F(AbortedRender, inTheOpening_leavesNoPictureAndNoRow) {
  NodeBench bench(transformedScene());
  bench.options.progress = [](const embedded::Progress& progress) {
    if (progress.stage == "Defocus") embedded::requestAbort();
  };
  embedded::RenderSession session(bench.node(), bench.options);
  EXPECT_FALSE(session.ok());
  EXPECT_FALSE(bench.drevin().picture().has(50, 0, width, DD::Image::Mask_RGBA, dvDeepMode::Both));
  DD::Image::Row row(0, width);
  EXPECT_FALSE(session.row(50, 0, width, DD::Image::Mask_RGBA, row));
}

/// Rows beside the picture, which their callers make, are aborted while they are made.
void expectRowsToEnd(NodeBench& bench, int pauses) {
  bench.options.region = DD::Image::Box(0, 0, width, 1);
  Draw draw(31);
  for (int i = 0; i < pauses; ++i) {
    embedded::RenderSession session(bench.node(), bench.options);
    ASSERT_TRUE(session.ok());
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&, thread] {
        DD::Image::Row row(0, width);
        for (int y = 1 + thread; session.row(y % height, 0, width, DD::Image::Mask_RGBA, row);
             ++y) {
        }
        ++refused;
      });
    }
    const Interrupter interrupter{microseconds(draw.whole(0, 40000))};
    for (std::thread& thread : threads)
      thread.join();
    EXPECT_EQ(refused, 4) << "rows go on until they are refused";
    embedded::clearAbort();
  }
}

TEST_F(AbortedRender, flatRowsOnManyThreads_end) {
  NodeBench bench(transformedScene());
  expectRowsToEnd(bench, 6);
}

TEST_F(AbortedRender, deepRowsOnManyThreads_end) {
  DeepBench bench(transformedDeepScene());
  expectRowsToEnd(bench.node(), 6);
}

}  // namespace
}  // namespace drevin::test
