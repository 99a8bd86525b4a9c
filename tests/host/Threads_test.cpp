#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "DDImage/Thread.h"
#include "EmbeddedHost/Render.h"

using DD::Image::Thread;

namespace {

/// Counts how often each index ran.
struct Counts {
  std::array<std::atomic<int>, 16> ran{};
  std::atomic<unsigned> count{0};
};

void countIndex(unsigned index, unsigned count, void* userData) {
  auto* counts = static_cast<Counts*>(userData);
  ++counts->ran.at(index);
  counts->count = count;
}

struct Gate {
  std::atomic<bool> open{false};
  std::atomic<int> inside{0};
};

void waitAtGate(unsigned /*index*/, unsigned /*count*/, void* userData) {
  auto* gate = static_cast<Gate*>(userData);
  ++gate->inside;
  while (!gate->open)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

struct Nested {
  std::atomic<int> leaves{0};
  int depth = 0;
};

void spawnNested(unsigned /*index*/, unsigned count, void* userData) {
  auto* outer = static_cast<Nested*>(userData);
  if (outer->depth == 0) {
    ++outer->leaves;
    return;
  }
  Nested inner;
  inner.depth = outer->depth - 1;
  Thread::spawn(spawnNested, count, &inner);
  Thread::wait(&inner);
  outer->leaves += inner.leaves;
}

void throwAtOdd(unsigned index, unsigned /*count*/, void* userData) {
  ++*static_cast<std::atomic<int>*>(userData);
  if (index % 2 == 1) throw std::runtime_error("odd");
}

}  // namespace

TEST(Thread, spawn_runsEveryIndexOnce) {
  Counts counts;
  ASSERT_TRUE(Thread::spawn(countIndex, 16, &counts));
  Thread::wait(&counts);
  for (const auto& ran : counts.ran)
    EXPECT_EQ(ran, 1);
  EXPECT_EQ(counts.count, 16U);
}

TEST(Thread, spawnOfNone_isFalse) {
  Counts counts;
  EXPECT_FALSE(Thread::spawn(countIndex, 0, &counts));
  Thread::wait(&counts);
  EXPECT_FALSE(Thread::running(&counts));
}

TEST(Thread, spawn_returnsAtOnceAndAllRunTogether) {
  Gate gate;
  ASSERT_TRUE(Thread::spawn(waitAtGate, 6, &gate));
  EXPECT_TRUE(Thread::running(&gate));
  const auto start = std::chrono::steady_clock::now();
  while (gate.inside < 6 && std::chrono::steady_clock::now() - start < std::chrono::seconds(20))
    std::this_thread::yield();
  EXPECT_EQ(gate.inside, 6) << "more than there are processors, all at once";
  gate.open = true;
  Thread::wait(&gate);
  EXPECT_FALSE(Thread::running(&gate));
}

TEST(Thread, wait_isForItsOwnPointerOnly) {
  Gate gate;
  Thread::spawn(waitAtGate, 2, &gate);
  Counts counts;
  Thread::spawn(countIndex, 4, &counts);
  Thread::wait(&counts);
  EXPECT_EQ(counts.ran[3], 1);
  EXPECT_TRUE(Thread::running(&gate));
  gate.open = true;
  Thread::wait(&gate);
}

TEST(Thread, severalSpawnsOfOnePointer_areWaitedForTogether) {
  Counts counts;
  Thread::spawn(countIndex, 4, &counts);
  Thread::spawn(countIndex, 4, &counts);
  Thread::wait(&counts);
  EXPECT_EQ(counts.ran[0], 2);
  EXPECT_EQ(counts.ran[3], 2);
}

TEST(Thread, nestedSpawns_doNotLockUp) {
  Nested nested;
  nested.depth = 3;
  Thread::spawn(spawnNested, 3, &nested);
  Thread::wait(&nested);
  EXPECT_EQ(nested.leaves, 81);
}

TEST(Thread, fromSeveralThreadsAtOnce_eachWaitsForItsOwn) {
  std::vector<std::thread> callers;
  std::atomic<int> total{0};
  callers.reserve(4);
  for (int i = 0; i < 4; ++i) {
    callers.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        Counts counts;
        Thread::spawn(countIndex, 3, &counts);
        Thread::wait(&counts);
        total += counts.ran[0] + counts.ran[1] + counts.ran[2];
      }
    });
  }
  for (std::thread& caller : callers)
    caller.join();
  EXPECT_EQ(total, 4 * 50 * 3);
}

TEST(Thread, exceptionOfATask_leavesWaitAfterAllHaveEnded) {
  std::atomic<int> ran{0};
  Thread::spawn(throwAtOdd, 5, &ran);
  EXPECT_THROW(Thread::wait(&ran), std::runtime_error);
  EXPECT_EQ(ran, 5);
  Thread::wait(&ran);
}

TEST(Thread, spawnCalls_areCounted) {
  const std::uint64_t before = embedded::spawnCalls();
  Counts counts;
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(Thread::spawn(countIndex, 2, &counts));
    Thread::wait(&counts);
  }
  EXPECT_EQ(embedded::spawnCalls(), before + 3);
}

TEST(Thread, numCPUs_isWhatMayBeUsedOrWhatWasSet) {
  const unsigned before = Thread::numCPUs;
  EXPECT_GE(before, 1U);
  embedded::setThreadCount(7);
  EXPECT_EQ(Thread::numCPUs, 7U);
  embedded::setThreadCount(0);
  EXPECT_EQ(Thread::numCPUs, embedded::usableProcessors());
  Thread::numCPUs = before;
}
