#include "node/HostParallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <utility>

#include "DDImage/Thread.h"

namespace drevin {

using DD::Image::Thread;

namespace {

/// What leaves a worker must not leave a thread of the host: it is kept for the caller.
class Work {
 public:
  Work(const dvParallel& parallel, const std::function<void(int, int)>& function, int items)
      : parallel_(parallel), function_(function), items_(items) {}

  void run(int worker) {
    // What is taken is begun, abort or not: later items may wait for it.
    while (!parallel_.aborted()) {
      const int item = next_++;
      if (item >= items_) return;
      try {
        function_(worker, item);
      } catch (...) {
        fail(item);
        return;
      }
    }
  }

  void rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  // Of several that fail the first is told, whichever comes to it first: those before it have
  // begun.
  void fail(int item) {
    next_ = items_;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (failure_ && item > failed_) return;
    failed_ = item;
    failure_ = std::current_exception();
  }

  const dvParallel& parallel_;
  const std::function<void(int, int)>& function_;
  int items_;
  std::atomic<int> next_{0};
  std::mutex mutex_;
  int failed_ = 0;
  std::exception_ptr failure_;
};

/// Worker 0 is the caller.
void runWorker(unsigned index, unsigned /*count*/, void* work) {
  static_cast<Work*>(work)->run(static_cast<int>(index) + 1);
}

}  // namespace

dvHostParallel::dvHostParallel(std::function<bool()> aborted)
    : workers_(std::max(1, static_cast<int>(Thread::numCPUs))), aborted_(std::move(aborted)) {}

bool dvHostParallel::aborted() const {
  if (!wasAborted_ && aborted_()) wasAborted_ = true;
  return wasAborted_;
}

void dvHostParallel::forEach(int items, const std::function<void(int worker, int item)>& work) {
  Work shared(*this, work, items);
  const int others = std::min(workers_, items) - 1;
  const bool spawned =
      others > 0 && Thread::spawn(runWorker, static_cast<unsigned>(others), &shared);
  shared.run(0);
  if (spawned) Thread::wait(&shared);
  shared.rethrow();
}

}  // namespace drevin
