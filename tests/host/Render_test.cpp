#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <future>
#include <numeric>
#include <random>
#include <thread>

#include "DDImage/Thread.h"
#include "host/HostBench.h"

using DD::Image::Box;
using DD::Image::Chan_Red;
using DD::Image::Row;
using embedded::RenderResult;
using embedded::RenderSession;
using embedded::RenderStatus;
using smooth::HostBench;
using smooth::SmoothOp;

namespace {

float at(const embedded::Image& image, int x, int y, DD::Image::Channel z) {
  const int index = (y - image.box.y()) * image.box.w() + x - image.box.x();
  return image.planes.at(z)->at(static_cast<std::size_t>(index));
}

}  // namespace

TEST(Render, picture_isTheOperatorsOnItsBoxWithTheInputsFormat) {
  HostBench bench;
  const RenderResult result = bench.render();
  ASSERT_EQ(result.status, RenderStatus::Done);
  EXPECT_EQ(result.image.box, Box(-1, -1, 9, 7));
  EXPECT_EQ(result.image.format.width(), 8);
  EXPECT_EQ(result.image.planes.size(), 4U);
  // Inside, the mean of a ramp is the middle; at a corner the edge repeats.
  EXPECT_NEAR(at(result.image, 3, 2, Chan_Red), smooth::markedValue(3, 2, Chan_Red), 1e-3F);
  EXPECT_NEAR(at(result.image, -1, -1, Chan_Red), smooth::markedValue(0, 0, Chan_Red), 1e-3F);
  EXPECT_NEAR(at(result.image, 0, 0, Chan_Red), smooth::markedValue(0, 0, Chan_Red) + 11.0F / 3.0F,
              1e-3F);
}

TEST(Render, region_isClippedToTheOperatorsBox) {
  HostBench bench;
  const RenderResult whole = bench.render();
  bench.options.region = Box(5, -50, 100, 3);
  const RenderResult part = bench.render();
  EXPECT_EQ(part.image.box, Box(5, -1, 9, 3));
  for (int y = -1; y < 3; ++y) {
    for (int x = 5; x < 9; ++x)
      EXPECT_EQ(at(part.image, x, y, Chan_Red), at(whole.image, x, y, Chan_Red));
  }
}

TEST(Render, anyNumberOfThreads_makesTheSamePicture) {
  HostBench bench(Box(0, 0, 40, 60));
  bench.options.threads = 1;
  const RenderResult one = bench.render();
  for (const unsigned threads : {2U, 7U, 100U}) {
    bench.options.threads = threads;
    const RenderResult many = bench.render();
    ASSERT_EQ(many.status, RenderStatus::Done);
    EXPECT_EQ(many.threads, threads);
    for (const DD::Image::Channel z : bench.options.channels)
      EXPECT_EQ(*many.image.planes.at(z), *one.image.planes.at(z));
  }
}

TEST(Render, rows_runOnSeveralThreadsAtOnce) {
  HostBench bench;
  bench.options.threads = 3;
  std::atomic<int> inside{0};
  std::atomic<bool> met{false};
  bench.op().onRow = [&](SmoothOp&, int) {
    ++inside;
    const auto start = std::chrono::steady_clock::now();
    while (!met && std::chrono::steady_clock::now() - start < std::chrono::seconds(20)) {
      if (inside >= 3) met = true;
      std::this_thread::yield();
    }
  };
  bench.render();
  EXPECT_TRUE(met);
}

TEST(Render, threadsZero_isTheProcessorsThatMayBeUsed) {
  HostBench bench;
  bench.options.threads = 0;
  EXPECT_EQ(bench.render().threads, DD::Image::Thread::numCPUs);
}

TEST(Render, channelThatTheOperatorLacks_isNotInThePicture) {
  HostBench bench;
  bench.options.channels = DD::Image::Mask_Red | DD::Image::Mask_Z;
  const RenderResult result = bench.render();
  EXPECT_EQ(result.image.planes.size(), 1U);
  EXPECT_EQ(result.image.planes.count(Chan_Red), 1U);
  bench.options.channels = DD::Image::Mask_All;
  EXPECT_EQ(bench.render().image.planes.size(), 4U);
}

TEST(Abort, duringRows_stopsSoonAndKeepsNoPicture) {
  HostBench bench(Box(0, 0, 8, 5000));
  bench.options.threads = 2;
  bench.op().onRow = [](SmoothOp& op, int) {
    if (op.rows == 10) embedded::requestAbort();
  };
  const RenderResult result = bench.render();
  EXPECT_EQ(result.status, RenderStatus::Aborted);
  EXPECT_LT(bench.op().rows, 20);
  EXPECT_TRUE(result.image.planes.empty());
  EXPECT_TRUE(result.messages.empty());
  EXPECT_EQ(bench.op().calls.back(), "close");
}

TEST(Abort, longRow_seesIt) {
  HostBench bench;
  bench.op().onRow = [](SmoothOp& op, int) {
    embedded::requestAbort();
    EXPECT_TRUE(op.aborted());
  };
  EXPECT_EQ(bench.render().status, RenderStatus::Aborted);
}

TEST(Abort, inOpen_makesNoRow) {
  HostBench bench;
  bench.op().onOpen = [](SmoothOp&) { embedded::requestAbort(); };
  EXPECT_EQ(bench.render().status, RenderStatus::Aborted);
  EXPECT_EQ(bench.op().rows, 0);
}

TEST(Abort, fromASignalHandler_isSeen) {
  HostBench bench;
  const auto previous = std::signal(SIGUSR1, [](int) { embedded::requestAbort(); });
  bench.op().onRow = [](SmoothOp&, int) { std::raise(SIGUSR1); };
  EXPECT_EQ(bench.render().status, RenderStatus::Aborted);
  std::signal(SIGUSR1, previous);
}

TEST(Abort, cleared_rendersAgain) {
  HostBench bench;
  embedded::requestAbort();
  EXPECT_TRUE(embedded::abortRequested());
  EXPECT_EQ(bench.render().status, RenderStatus::Aborted);
  embedded::clearAbort();
  EXPECT_FALSE(bench.op().aborted());
  EXPECT_EQ(bench.render().status, RenderStatus::Done);
}

TEST(Stages, areTimedUnderTheNamesThatTheOperatorAnnounces) {
  HostBench bench;
  bench.op().onOpen = [](SmoothOp& op) {
    op.progressMessage("table %d", 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    op.progressMessage("%s", "table 2");
  };
  const RenderResult result = bench.render();
  std::vector<std::string> names;
  for (const embedded::Stage& stage : result.stages)
    names.push_back(stage.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Validate", "table 1", "table 2", "Rows"}));
  EXPECT_GE(result.stages[1].seconds, 0.02);
  EXPECT_LT(result.stages[2].seconds, result.stages[1].seconds);
}

TEST(Stages, announcedByRows_areNone) {
  HostBench bench;
  bench.op().onRow = [](SmoothOp& op, int) { op.progressMessage("%s", "row"); };
  EXPECT_EQ(bench.render().stages.size(), 2U);
}

TEST(Progress, isToldOnTheCallingThread) {
  HostBench bench;
  const std::thread::id caller = std::this_thread::get_id();
  std::vector<embedded::Progress> told;
  bench.options.progress = [&](const embedded::Progress& progress) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    told.push_back(progress);
  };
  bench.op().onOpen = [](SmoothOp& op) {
    std::thread([&] { op.progressMessage("%s", "elsewhere"); }).join();
    op.progressMessage("%s", "table");
  };
  bench.op().onRow = [](SmoothOp&, int) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  };
  bench.render();
  ASSERT_GE(told.size(), 5U);
  EXPECT_EQ(told[0].stage, "Validate");
  EXPECT_EQ(told[0].rowsTotal, 0);
  EXPECT_EQ(told[1].stage, "table") << "what another thread announces is timed, but not told";
  EXPECT_EQ(told[2].stage, "Rows");
  EXPECT_EQ(told[2].rowsDone, 0);
  EXPECT_EQ(told.back().rowsDone, 8);
  EXPECT_EQ(told.back().rowsTotal, 8);
}

TEST(Progress, fractions_areToldAboutTenTimesASecond) {
  HostBench bench;
  std::vector<double> fractions;
  bench.options.progress = [&](const embedded::Progress& progress) {
    if (progress.stage == "table" && progress.fraction > 0.0) {
      fractions.push_back(progress.fraction);
    }
  };
  bench.op().onOpen = [](SmoothOp& op) {
    op.progressMessage("%s", "table");
    for (int i = 1; i <= 1000; ++i)
      op.progressFraction(i, 2000);
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    op.progressFraction(0.75);
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    op.progressFraction(7.0);
  };
  bench.render();
  ASSERT_GE(fractions.size(), 2U);
  EXPECT_LE(fractions.size(), 4U);
  EXPECT_EQ(fractions[fractions.size() - 2], 0.75);
  EXPECT_EQ(fractions.back(), 1.0);
}

TEST(RenderSession, rowsOfAnyOrderMoreThanOnce_areThoseOfTheRender) {
  HostBench bench;
  const RenderResult whole = bench.render();
  RenderSession session(bench.node, bench.options);
  ASSERT_TRUE(session.ok());
  EXPECT_EQ(session.box(), whole.image.box);
  for (const int y : {6, -1, 3, 3, 0, 6}) {
    for (const auto& [x, r] : {std::pair(-1, 9), std::pair(2, 5), std::pair(8, 9)}) {
      Row row(x, r);
      ASSERT_TRUE(session.row(y, x, r, bench.options.channels, row));
      for (int i = x; i < r; ++i)
        EXPECT_EQ(row[Chan_Red][i], at(whole.image, i, y, Chan_Red)) << i << " " << y;
    }
  }
}

TEST(RenderSession, rowsFromManyThreads_areThoseOfTheRender) {
  HostBench bench(Box(0, 0, 16, 40));
  const RenderResult whole = bench.render();
  RenderSession session(bench.node, bench.options);
  std::vector<std::future<bool>> threads;
  for (unsigned seed = 0; seed < 4; ++seed) {
    threads.push_back(std::async(std::launch::async, [&, seed] {
      std::vector<int> rows(static_cast<std::size_t>(session.box().h()));
      std::iota(rows.begin(), rows.end(), session.box().y());
      std::shuffle(rows.begin(), rows.end(), std::mt19937(seed));
      bool same = true;
      for (const int y : rows) {
        Row row(-1, 17);
        same = same && session.row(y, -1, 17, bench.options.channels, row);
        for (int x = -1; x < 17; ++x)
          same = same && row[Chan_Red][x] == at(whole.image, x, y, Chan_Red);
      }
      return same;
    }));
  }
  for (auto& thread : threads)
    EXPECT_TRUE(thread.get());
}

TEST(RenderSession, rowOutsideTheBox_repeatsTheEdge) {
  HostBench bench;
  RenderSession session(bench.node, bench.options);
  Row inside(-1, 9);
  ASSERT_TRUE(session.row(6, -1, 9, bench.options.channels, inside));
  Row outside(-4, 12);
  ASSERT_TRUE(session.row(20, -4, 12, bench.options.channels, outside));
  EXPECT_EQ(outside[Chan_Red][-4], inside[Chan_Red][-1]);
  EXPECT_EQ(outside[Chan_Red][3], inside[Chan_Red][3]);
  EXPECT_EQ(outside[Chan_Red][11], inside[Chan_Red][8]);
}

TEST(RenderSession, channelThatTheOperatorLacks_readsZero) {
  HostBench bench;
  RenderSession session(bench.node, bench.options);
  Row row(0, 4);
  std::fill_n(row.writable(DD::Image::Chan_Z), 4, 9.0F);
  ASSERT_TRUE(session.row(0, 0, 4, DD::Image::Mask_Red | DD::Image::Mask_Z, row));
  EXPECT_TRUE(row.is_zero(DD::Image::Chan_Z));
  EXPECT_FALSE(row.is_zero(Chan_Red));
}

TEST(RenderSession, emptySpanOrNoChannels_asksNothing) {
  HostBench bench;
  RenderSession session(bench.node, bench.options);
  Row row(0, 4);
  EXPECT_TRUE(session.row(0, 2, 2, bench.options.channels, row));
  EXPECT_TRUE(session.row(0, 0, 4, DD::Image::Mask_None, row));
  EXPECT_EQ(bench.op().rows, 0);
}

TEST(RenderSession, afterAnError_givesNoRow) {
  HostBench bench;
  RenderSession session(bench.node, bench.options);
  bench.op().onRow = [](SmoothOp& op, int) { op.error("%s", "stop"); };
  Row row(0, 4);
  EXPECT_FALSE(session.row(0, 0, 4, bench.options.channels, row));
  EXPECT_FALSE(session.row(1, 0, 4, bench.options.channels, row));
  EXPECT_EQ(bench.op().rows, 1);
  EXPECT_TRUE(session.failed());
  ASSERT_EQ(session.messages().size(), 1U);
  EXPECT_EQ(session.messages()[0].text, "stop");
}

TEST(RenderSession, laterOneOnTheSameNode_endsTheEarlier) {
  HostBench bench;
  auto first = std::make_unique<RenderSession>(bench.node, bench.options);
  RenderSession second(bench.node, bench.options);
  EXPECT_FALSE(first->ok());
  first.reset();
  EXPECT_EQ(std::count(bench.op().calls.begin(), bench.op().calls.end(), "close"), 1)
      << "closed before it is stored anew, and not by the end of the first";
  Row row(0, 4);
  EXPECT_TRUE(second.row(0, 0, 4, bench.options.channels, row));
}

TEST(RenderSession, ofTwoNodes_standSideBySide) {
  HostBench a;
  HostBench b;
  b.knob("gain").set_value(0.5);
  RenderSession first(a.node, a.options);
  RenderSession second(b.node, b.options);
  Row rowA(0, 4);
  Row rowB(0, 4);
  ASSERT_TRUE(first.row(2, 0, 4, a.options.channels, rowA));
  ASSERT_TRUE(second.row(2, 0, 4, b.options.channels, rowB));
  EXPECT_NEAR(rowB[Chan_Red][2], 0.5F * rowA[Chan_Red][2], 1e-3F);
  EXPECT_NE(first.hash(), second.hash());
}

TEST(RenderSession, ownStages_followThoseOfTheOpening) {
  HostBench bench;
  RenderSession session(bench.node, bench.options);
  session.beginStage("Mine");
  ASSERT_EQ(session.stages().size(), 2U);
  EXPECT_EQ(session.stages()[1].name, "Mine");
  EXPECT_EQ(Box(session.info()), Box(-1, -1, 9, 7));
}
