#include "DemoRows.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "Signals.h"

namespace drevintool {

void forDemoRows(int rows, const std::function<void(int)>& work, unsigned threads) {
  std::atomic<int> next{0};
  const auto some = [&] {
    for (int row = next++; row < rows && caughtSignal() == 0; row = next++)
      work(row);
  };
  std::vector<std::thread> helpers;
  const unsigned wanted = threads > 0 ? threads : std::thread::hardware_concurrency();
  const unsigned count = std::clamp(wanted, 1U, 32U);
  try {
    for (unsigned i = 1; i < count; ++i)
      helpers.emplace_back(some);
  } catch (const std::system_error&) {
    // Fewer threads than wanted still finish the work.
  }
  some();
  for (std::thread& helper : helpers)
    helper.join();
  throwIfInterrupted();
}

}  // namespace drevintool
