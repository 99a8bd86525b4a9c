#include "demo/DemoRows.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "terminal/Signals.h"

namespace drevintool {

void forDemoRows(int rows, const std::function<void(int)>& work, unsigned threads) {
  std::atomic<int> next{0};
  std::once_flag once;
  std::exception_ptr failure;
  const auto some = [&] {
    try {
      for (int row = next++; row < rows && caughtSignal() == 0; row = next++)
        work(row);
    } catch (...) {
      std::call_once(once, [&] { failure = std::current_exception(); });
      next = rows;
    }
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
  if (failure) std::rethrow_exception(failure);
  throwIfInterrupted();
}

}  // namespace drevintool
