#include "node/HostParallel.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "DDImage/Thread.h"

namespace drevin {

using DD::Image::Thread;

namespace {

struct Work {
  const dvParallel& parallel;
  const std::function<void(int, int)>& function;
  int items;
  std::atomic<int> next{0};

  void run(int worker) {
    for (int item = next++; item < items && !parallel.aborted(); item = next++)
      function(worker, item);
  }
};

void runWorker(unsigned index, unsigned /*count*/, void* work) {
  static_cast<Work*>(work)->run(static_cast<int>(index));
}

}  // namespace

dvHostParallel::dvHostParallel(std::function<bool()> aborted)
    : workers_(std::max(1, static_cast<int>(Thread::numCPUs))), aborted_(std::move(aborted)) {}

void dvHostParallel::forEach(int items, const std::function<void(int worker, int item)>& work) {
  Work shared{*this, work, items};
  if (items > 1 && Thread::spawn(runWorker, static_cast<unsigned>(workers_), &shared)) {
    Thread::wait(&shared);
  } else {
    shared.run(0);
  }
}

}  // namespace drevin
