#include "engine/InOrder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ThreadParallel.h"

namespace drevin::test {
namespace {

struct Number {
  int value = -1;
};

std::vector<int> upTo(int count) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

// Later items are ready long before earlier ones.
void waitFor(int item, int items) {
  std::this_thread::sleep_for(std::chrono::microseconds(50 * (items - item)));
}

TEST(InOrder, manyWorkers_resultsAreUsedInTheOrderOfTheirItems) {
  constexpr int items = 40;
  for (const std::size_t workers : {4U, 5U, 100U}) {
    std::vector<int> used;
    dvInOrder<Number> order(workers, [&](int item, const Number& number) {
      EXPECT_EQ(number.value, item);
      used.push_back(item);
    });
    ThreadParallel parallel(4);
    parallel.forEach(items, [&](int /*worker*/, int item) {
      dvInOrder<Number>::Turn turn(order, item);
      waitFor(item % 4, 4);
      auto number = order.blank();
      number->value = item;
      turn.end(std::move(number));
    });
    EXPECT_EQ(used, upTo(items)) << workers;
  }
}

TEST(InOrder, oneWorker_usesEachResultAtOnce) {
  int used = 0;
  dvInOrder<Number> order(1, [&](int /*item*/, const Number& /*number*/) { ++used; });
  for (int item = 0; item < 5; ++item) {
    dvInOrder<Number>::Turn turn(order, item);
    turn.end(order.blank());
    EXPECT_EQ(used, item + 1);
  }
}

TEST(InOrder, usedResult_isTheNextBlank) {
  const Number* first = nullptr;
  dvInOrder<Number> order(1, [&](int item, const Number& number) {
    if (item == 0) first = &number;
  });
  dvInOrder<Number>::Turn(order, 0).end(order.blank());
  EXPECT_EQ(order.blank().get(), first);
}

TEST(InOrder, itemWithoutResult_isPassedOver) {
  std::vector<int> used;
  dvInOrder<Number> order(3, [&](int item, const Number& /*number*/) { used.push_back(item); });
  ThreadParallel parallel(3);
  parallel.forEach(9, [&](int /*worker*/, int item) {
    try {
      dvInOrder<Number>::Turn turn(order, item);
      if (item % 3 == 1) throw std::runtime_error("no result");
      turn.end(order.blank());
    } catch (const std::runtime_error&) {
    }
  });
  EXPECT_EQ(used, (std::vector<int>{0, 2, 3, 5, 6, 8}));
}

TEST(InOrder, resultsPiledUp_workersWaitUntilTheDueOneIsThere) {
  constexpr std::size_t workers = 4;
  std::size_t made = 0;
  std::mutex mutex;
  dvInOrder<Number> order(workers, [](int /*item*/, const Number& /*number*/) {});
  ThreadParallel parallel(4);
  parallel.forEach(40, [&](int /*worker*/, int item) {
    dvInOrder<Number>::Turn turn(order, item);
    auto number = order.blank();
    if (number->value < 0) {
      const std::lock_guard<std::mutex> lock(mutex);
      number->value = static_cast<int>(made++);
    }
    if (item == 0) waitFor(0, 200);
    turn.end(std::move(number));
  });
  // Those that wait, one in each worker's hands, one being used.
  EXPECT_LE(made, 2 * workers + 1);
}

}  // namespace
}  // namespace drevin::test
