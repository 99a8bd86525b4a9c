#pragma once

/// Work spread over threads of its own, with an abort that a test asks for.

#include <atomic>
#include <thread>
#include <vector>

#include "engine/Parallel.h"

namespace drevin::test {

class ThreadParallel : public dvParallel {
 public:
  explicit ThreadParallel(int workers) : workers_(workers) {}

  int workers() const override { return workers_; }
  bool aborted() const override { return aborted_; }
  void abort() { aborted_ = true; }
  /// Aborts when that many items have begun since.
  void abortAfter(int items) { itemsLeft_ = items; }
  /// Items that have begun.
  int begun() const { return begun_; }

  void forEach(int items, const std::function<void(int worker, int item)>& work) override {
    std::atomic<int> next{0};
    const auto run = [&](int worker) {
      while (!aborted_) {
        const int item = next++;
        if (item >= items) return;
        ++begun_;
        if (--itemsLeft_ == 0) aborted_ = true;
        work(worker, item);
      }
    };
    std::vector<std::thread> threads;
    for (int worker = 1; worker < workers_; ++worker)
      threads.emplace_back(run, worker);
    run(0);
    for (std::thread& thread : threads)
      thread.join();
  }

 private:
  int workers_;
  std::atomic<bool> aborted_{false};
  std::atomic<int> itemsLeft_{-1};
  std::atomic<int> begun_{0};
};

}  // namespace drevin::test
