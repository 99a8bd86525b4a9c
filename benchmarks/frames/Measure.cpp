#include "frames/Measure.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <stdexcept>

namespace drevin::bench {

namespace {

double threadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

double secondsOf(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double threadSecondsOf(const std::function<void()>& work) {
  const double begin = threadSeconds();
  work();
  return threadSeconds() - begin;
}

double median(std::vector<double> values) {
  if (values.empty()) throw std::invalid_argument("the median of no values");
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  if (values.size() % 2 == 1) return values[middle];
  return 0.5 * (values[middle - 1] + values[middle]);
}

std::vector<int> spreadRows(int height, int count) {
  const int rows = std::min(height, count);
  std::vector<int> spread;
  spread.reserve(static_cast<std::size_t>(rows));
  for (int i = 0; i < rows; ++i)
    spread.push_back(height * (2 * i + 1) / (2 * rows));
  return spread;
}

double wholeFrameSeconds(double seconds, int rows, int height, unsigned threads) {
  return seconds / rows * height / threads;
}

}  // namespace drevin::bench
