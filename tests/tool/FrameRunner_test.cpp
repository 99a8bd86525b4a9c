#include "sequence/FrameRunner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <thread>
#include <vector>

namespace drevintool {
namespace {

// What the frames of one run do and did.
struct Record {
  std::set<std::size_t> badReads;
  std::set<std::size_t> noMemoryBeside;  // cannot be read while another frame is held
  std::map<std::size_t, ExitCode> badFrames;
  std::function<void(std::size_t)> onFinish = [](std::size_t) {};

  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::size_t> read;
  std::vector<std::size_t> begun;
  std::size_t alive = 0;
  std::size_t mostAlive = 0;
  std::map<std::size_t, FrameOutcome> ended;
};

class Frame : public FrameWork {
 public:
  Frame(Record& record, std::size_t index) : record_(record), index_(index) {
    const std::lock_guard<std::mutex> lock(record_.mutex);
    record_.mostAlive = std::max(record_.mostAlive, ++record_.alive);
  }
  ~Frame() override {
    const std::lock_guard<std::mutex> lock(record_.mutex);
    --record_.alive;
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  void read() override {
    const std::lock_guard<std::mutex> lock(record_.mutex);
    record_.read.push_back(index_);
    record_.changed.notify_all();
    if (record_.noMemoryBeside.count(index_) != 0 && record_.alive > 1) throw std::bad_alloc();
    if (record_.badReads.count(index_) != 0) {
      throw ToolError(ExitCode::InputUnreadable, "cannot read");
    }
  }

  FrameOutcome finish() override {
    {
      const std::lock_guard<std::mutex> lock(record_.mutex);
      record_.begun.push_back(index_);
    }
    record_.onFinish(index_);
    FrameOutcome outcome;
    const auto bad = record_.badFrames.find(index_);
    if (bad != record_.badFrames.end()) outcome.code = bad->second;
    return outcome;
  }

 private:
  Record& record_;
  std::size_t index_;
};

void run(Record& record, std::size_t count, const FrameRunOptions& options) {
  runFrames(
      count, options, [&](std::size_t index) { return std::make_unique<Frame>(record, index); },
      [&](std::size_t index, FrameOutcome outcome) {
        const std::lock_guard<std::mutex> lock(record.mutex);
        record.ended[index] = std::move(outcome);
        record.changed.notify_all();
      });
}

std::vector<std::size_t> firstNumbers(std::size_t count) {
  std::vector<std::size_t> numbers(count);
  for (std::size_t i = 0; i < count; ++i)
    numbers[i] = i;
  return numbers;
}

TEST(FrameRunner, allFrames_endOnceForAnyNumberInFlight) {
  for (const unsigned inFlight : {1U, 2U, 5U, 40U}) {
    Record record;
    run(record, 20, {inFlight, false});
    EXPECT_EQ(record.ended.size(), 20U) << inFlight;
    EXPECT_EQ(record.read, firstNumbers(20)) << inFlight;
    EXPECT_EQ(record.begun.size(), 20U) << inFlight;
  }
}

TEST(FrameRunner, noFrames_isNothingToDo) {
  Record record;
  run(record, 0, {2, false});
  EXPECT_TRUE(record.ended.empty());
}

TEST(FrameRunner, oneInFlight_beginsInOrder) {
  Record record;
  run(record, 10, {1, false});
  EXPECT_EQ(record.begun, firstNumbers(10));
}

TEST(FrameRunner, nextFrame_isReadWhileThisOneIsFinished) {
  Record record;
  bool sawNext = false;
  record.onFinish = [&](std::size_t index) {
    if (index != 0) return;
    std::unique_lock<std::mutex> lock(record.mutex);
    sawNext = record.changed.wait_for(lock, std::chrono::seconds(20),
                                      [&] { return record.read.size() >= 2; });
  };
  run(record, 3, {1, false});
  EXPECT_TRUE(sawNext);
}

TEST(FrameRunner, framesInFlight_areFinishedAtOneTime) {
  Record record;
  std::atomic<int> together{0};
  std::atomic<bool> met{false};
  record.onFinish = [&](std::size_t) {
    ++together;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!met && std::chrono::steady_clock::now() < end) {
      if (together >= 3) met = true;
      std::this_thread::yield();
    }
    --together;
  };
  run(record, 3, {3, false});
  EXPECT_TRUE(met);
}

TEST(FrameRunner, framesHeld_areThoseInFlightAndAsManyRead) {
  for (const unsigned inFlight : {1U, 3U}) {
    Record record;
    record.onFinish = [](std::size_t) {
      std::this_thread::sleep_for(std::chrono::milliseconds(3));
    };
    run(record, 30, {inFlight, false});
    // One more is being read.
    EXPECT_LE(record.mostAlive, 2 * inFlight + 1) << inFlight;
    EXPECT_EQ(record.alive, 0U);
  }
}

TEST(FrameRunner, failedFrame_endsTheRunAfterAllBeforeIt) {
  for (const unsigned inFlight : {1U, 3U}) {
    Record record;
    record.badFrames[4] = ExitCode::RenderFailed;
    record.onFinish = [&](std::size_t index) {
      if (index <= 4) return;
      std::unique_lock<std::mutex> lock(record.mutex);
      record.changed.wait_for(lock, std::chrono::seconds(20),
                              [&] { return record.ended.count(4) != 0; });
    };
    run(record, 50, {inFlight, false});
    for (std::size_t i = 0; i <= 4; ++i)
      EXPECT_EQ(record.ended.count(i), 1U) << i;
    EXPECT_LE(record.ended.size(), 5U + inFlight - 1U);
    EXPECT_EQ(record.alive, 0U);
  }
}

TEST(FrameRunner, frameThatCannotBeRead_failsInItsTurn) {
  Record record;
  record.badReads = {2};
  run(record, 50, {1, false});
  EXPECT_EQ(record.begun, firstNumbers(2));
  ASSERT_EQ(record.ended.size(), 3U);
  EXPECT_EQ(record.ended[2].code, ExitCode::InputUnreadable);
  EXPECT_EQ(record.ended[2].errors, std::vector<std::string>{"cannot read"});
}

TEST(FrameRunner, frameThatCouldNotBeReadAhead_isReadAgainInItsTurn) {
  Record record;
  record.badReads = {1};
  record.onFinish = [&](std::size_t) {
    // What was in the way goes with the frame before it.
    std::unique_lock<std::mutex> lock(record.mutex);
    record.changed.wait_for(lock, std::chrono::seconds(20),
                            [&] { return record.read.size() >= 2; });
    record.badReads.clear();
  };
  run(record, 5, {1, false});
  EXPECT_EQ(record.begun, firstNumbers(5));
  EXPECT_EQ(std::count(record.read.begin(), record.read.end(), 1U), 2);
  for (const auto& [index, outcome] : record.ended)
    EXPECT_FALSE(outcome.failed()) << index;
}

// How often each frame was begun.
std::size_t timesBegun(const Record& record, std::size_t index) {
  return static_cast<std::size_t>(std::count(record.begun.begin(), record.begun.end(), index));
}

TEST(FrameRunner, frameThatLacksMemory_isDoneAgainWhileNoOtherIsHeld) {
  for (const unsigned inFlight : {1U, 3U}) {
    Record record;
    std::size_t aliveThen = 0;
    record.onFinish = [&](std::size_t index) {
      const std::lock_guard<std::mutex> lock(record.mutex);
      if (index != 4) return;
      if (timesBegun(record, 4) == 1) throw std::bad_alloc();
      aliveThen = record.alive;
    };
    run(record, 20, {inFlight, false});
    EXPECT_EQ(record.ended.size(), 20U) << inFlight;
    for (const auto& [index, outcome] : record.ended)
      EXPECT_FALSE(outcome.failed()) << index;
    EXPECT_EQ(timesBegun(record, 4), 2U) << inFlight;
    EXPECT_EQ(timesBegun(record, 5), 1U) << inFlight;
    EXPECT_EQ(aliveThen, 1U) << inFlight;
    EXPECT_EQ(record.alive, 0U);
  }
}

TEST(FrameRunner, frameThatLacksMemoryAloneToo_failsAfterTheSecondTime) {
  Record record;
  record.onFinish = [&](std::size_t index) {
    if (index == 1) throw std::bad_alloc();
  };
  run(record, 4, {2, true});
  EXPECT_EQ(timesBegun(record, 1), 2U);
  EXPECT_EQ(record.ended[1].code, ExitCode::RenderFailed);
  EXPECT_EQ(record.ended.size(), 4U);
}

TEST(FrameRunner, frameThatLacksMemoryWhileItIsReadTwice_isReadAlone) {
  Record record;
  record.noMemoryBeside = {3};
  run(record, 12, {4, false});
  EXPECT_EQ(record.ended.size(), 12U);
  for (const auto& [index, outcome] : record.ended)
    EXPECT_FALSE(outcome.failed()) << index;
}

// Every frame needs all the memory: each ends all the same.
TEST(FrameRunner, framesThatAllLackMemoryTogether_areDoneOneByOne) {
  Record record;
  std::atomic<int> together{0};
  record.onFinish = [&](std::size_t) {
    const int now = ++together;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const bool alone = now == 1 && together == 1;
    --together;
    if (!alone) throw std::bad_alloc();
  };
  run(record, 40, {4, false});
  EXPECT_EQ(record.ended.size(), 40U);
  for (const auto& [index, outcome] : record.ended)
    EXPECT_FALSE(outcome.failed()) << index;
}

TEST(FrameRunner, framesThatAreDoneOnceMore_areTold) {
  std::vector<std::size_t> told;
  Record record;
  FrameRunOptions options{1, false, [&](std::size_t index) { told.push_back(index); }};
  record.onFinish = [&](std::size_t index) {
    const std::lock_guard<std::mutex> lock(record.mutex);
    if (index == 2 && timesBegun(record, 2) == 1) throw std::bad_alloc();
  };
  run(record, 5, options);
  EXPECT_EQ(told, std::vector<std::size_t>{2});
}

TEST(FrameRunner, otherFailures_areNotTriedAgain) {
  Record record;
  record.badFrames[2] = ExitCode::RenderFailed;
  run(record, 5, {2, true});
  EXPECT_EQ(timesBegun(record, 2), 1U);
}

TEST(FrameRunner, goingOn_leavesNoFrameOut) {
  Record record;
  record.badReads = {0, 5};
  record.badFrames[7] = ExitCode::OutputNotWritten;
  run(record, 10, {2, true});
  EXPECT_EQ(record.ended.size(), 10U);
  const auto failed = std::count_if(record.ended.begin(), record.ended.end(),
                                    [](const auto& entry) { return entry.second.failed(); });
  EXPECT_EQ(failed, 3);
}

TEST(FrameRunner, whatAFrameThrows_isItsFailure) {
  Record record;
  record.onFinish = [](std::size_t index) {
    if (index == 1) throw std::bad_alloc();
    if (index == 2) throw std::runtime_error("odd");
  };
  run(record, 4, {2, true});
  EXPECT_EQ(record.ended[1].errors, std::vector<std::string>{"not enough memory"});
  EXPECT_EQ(record.ended[2].errors, std::vector<std::string>{"odd"});
  EXPECT_FALSE(record.ended[3].failed());
}

}  // namespace
}  // namespace drevintool
