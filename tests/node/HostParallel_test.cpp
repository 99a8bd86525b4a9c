#include "node/HostParallel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "DDImage/Thread.h"

namespace drevin::test {
namespace {

/// Lets the host have that many processors for as long as it lives.
class Processors {
 public:
  explicit Processors(unsigned count) : before_(DD::Image::Thread::numCPUs) {
    DD::Image::Thread::numCPUs = count;
  }
  ~Processors() { DD::Image::Thread::numCPUs = before_; }
  Processors(const Processors&) = delete;
  Processors& operator=(const Processors&) = delete;

 private:
  unsigned before_;
};

bool never() {
  return false;
}

void dawdle() {
  std::this_thread::sleep_for(std::chrono::microseconds(50));
}

/// How often each item was begun.
class Counts {
 public:
  explicit Counts(int items) : counts_(static_cast<std::size_t>(items)) {}

  void begin(int item) { ++counts_[static_cast<std::size_t>(item)]; }
  int of(std::size_t item) const { return counts_[item]; }
  bool allAre(int count) const {
    return std::all_of(counts_.begin(), counts_.end(), [=](int c) { return c == count; });
  }
  /// Begun items, all of which must come before the others.
  std::size_t begunAtTheFront() const {
    const auto isBegun = [](int c) { return c > 0; };
    EXPECT_TRUE(std::is_partitioned(counts_.begin(), counts_.end(), isBegun));
    return static_cast<std::size_t>(std::count_if(counts_.begin(), counts_.end(), isBegun));
  }

 private:
  std::vector<std::atomic<int>> counts_;
};

TEST(HostParallel, everyItem_isDoneOnce) {
  for (const unsigned processors : {1U, 2U, 7U}) {
    const Processors given(processors);
    dvHostParallel parallel(never);
    EXPECT_EQ(parallel.workers(), static_cast<int>(processors));
    for (const int items : {0, 1, 2, 3, 1000}) {
      Counts counts(items);
      parallel.forEach(items, [&](int /*worker*/, int item) { counts.begin(item); });
      EXPECT_TRUE(counts.allAre(1)) << items << " items, " << processors << " processors";
    }
  }
}

TEST(HostParallel, ofSeveralFailures_theFirstItemsIsTold) {
  const Processors two(2);
  dvHostParallel parallel(never);
  std::atomic<int> begun{0};
  try {
    parallel.forEach(2, [&](int /*worker*/, int item) {
      ++begun;
      while (begun < 2)
        dawdle();
      // The second item fails first.
      if (item == 0) std::this_thread::sleep_for(std::chrono::milliseconds(30));
      throw std::runtime_error(std::to_string(item));
    });
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "0");
  }
}

TEST(HostParallel, hostWithoutProcessors_hasOneWorker) {
  const Processors none(0);
  dvHostParallel parallel(never);
  EXPECT_EQ(parallel.workers(), 1);
  Counts counts(5);
  parallel.forEach(5, [&](int worker, int item) {
    EXPECT_EQ(worker, 0);
    counts.begin(item);
  });
  EXPECT_TRUE(counts.allAre(1));
}

TEST(HostParallel, workersAtOneTime_haveDistinctNumbers) {
  const Processors four(4);
  dvHostParallel parallel(never);
  std::vector<std::atomic<int>> inUse(4);
  std::atomic<int> clashes{0};
  parallel.forEach(400, [&](int worker, int /*item*/) {
    ASSERT_GE(worker, 0);
    ASSERT_LT(worker, 4);
    const auto place = static_cast<std::size_t>(worker);
    if (++inUse[place] != 1) ++clashes;
    dawdle();
    --inUse[place];
  });
  EXPECT_EQ(clashes, 0);
}

TEST(HostParallel, items_areDoneByMoreThanOneThread) {
  const Processors two(2);
  dvHostParallel parallel(never);
  std::atomic<int> present{0};
  std::atomic<bool> met{false};
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  parallel.forEach(2, [&](int /*worker*/, int /*item*/) {
    ++present;
    while (!met && std::chrono::steady_clock::now() < deadline) {
      if (present == 2) met = true;
      dawdle();
    }
  });
  EXPECT_TRUE(met);
}

TEST(HostParallel, abortBeforehand_beginsNothing) {
  dvHostParallel parallel([] { return true; });
  EXPECT_TRUE(parallel.aborted());
  for (const int items : {1, 100}) {
    Counts counts(items);
    parallel.forEach(items, [&](int /*worker*/, int item) { counts.begin(item); });
    EXPECT_TRUE(counts.allAre(0));
  }
}

TEST(HostParallel, abortHalfway_leavesTheRest) {
  const Processors four(4);
  std::atomic<bool> stop{false};
  dvHostParallel parallel([&] { return stop.load(); });
  Counts counts(10000);
  parallel.forEach(10000, [&](int /*worker*/, int item) {
    counts.begin(item);
    if (item == 20) stop = true;
  });
  const std::size_t begun = counts.begunAtTheFront();
  EXPECT_GT(begun, 20U);
  EXPECT_LT(begun, 10000U);
}

TEST(HostParallel, abortAtAnyMoment_passesNoItemOver) {
  // An item may wait for those before it: one that is taken and then not begun would never end.
  const Processors four(4);
  for (int answer = 0; answer < 60; ++answer) {
    std::atomic<int> asked{0};
    dvHostParallel parallel([&] { return asked++ == answer; });
    Counts counts(40);
    parallel.forEach(40, [&](int /*worker*/, int item) {
      counts.begin(item);
      dawdle();
    });
    EXPECT_LE(counts.begunAtTheFront(), 40U) << answer;
  }
}

TEST(HostParallel, abortThatPassesBy_isNotForgotten) {
  const Processors four(4);
  std::atomic<int> asked{0};
  dvHostParallel parallel([&] { return asked++ == 3; });
  std::atomic<int> begun{0};
  parallel.forEach(1000, [&](int /*worker*/, int /*item*/) { ++begun; });
  EXPECT_LT(begun, 1000);
  EXPECT_TRUE(parallel.aborted());
  parallel.forEach(10, [&](int /*worker*/, int /*item*/) { ADD_FAILURE() << "was begun"; });
}

TEST(HostParallel, exceptionOfAWorker_reachesTheCaller) {
  for (const unsigned processors : {1U, 4U}) {
    const Processors given(processors);
    dvHostParallel parallel(never);
    for (const int items : {1, 200}) {
      const auto fail = [&](int /*worker*/, int item) {
        if (item == items / 2) throw std::runtime_error("no memory for the row");
      };
      try {
        parallel.forEach(items, fail);
        ADD_FAILURE() << "nothing thrown";
      } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "no memory for the row");
      }
    }
  }
}

TEST(HostParallel, exceptionsOfAllWorkers_reachTheCallerAsOne) {
  const Processors four(4);
  dvHostParallel parallel(never);
  const auto fail = [](int /*worker*/, int /*item*/) { throw std::runtime_error("all of them"); };
  EXPECT_THROW(parallel.forEach(100, fail), std::runtime_error);
}

TEST(HostParallel, afterAnException_theNextWorkIsDone) {
  const Processors four(4);
  dvHostParallel parallel(never);
  const auto fail = [](int /*worker*/, int item) {
    if (item == 3) throw std::runtime_error("once");
  };
  EXPECT_THROW(parallel.forEach(50, fail), std::runtime_error);
  Counts counts(50);
  parallel.forEach(50, [&](int /*worker*/, int item) { counts.begin(item); });
  EXPECT_TRUE(counts.allAre(1));
}

TEST(HostParallel, exceptionBesideItemsThatWait_leavesNoWorkerBehind) {
  // Nothing that the items refer to may be in use after the call.
  const Processors four(4);
  dvHostParallel parallel(never);
  std::atomic<int> running{0};
  const auto work = [&](int /*worker*/, int item) {
    ++running;
    dawdle();
    --running;
    if (item == 5) throw std::runtime_error("one of many");
  };
  EXPECT_THROW(parallel.forEach(500, work), std::runtime_error);
  EXPECT_EQ(running, 0);
}

}  // namespace
}  // namespace drevin::test
