#pragma once

/// The pool of threads behind Thread::spawn.

#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "DDImage/Thread.h"

namespace embedded {

class ThreadPool {
 public:
  static ThreadPool& instance();
  ~ThreadPool();

  void spawn(DD::Image::Thread::ThreadFunction function, unsigned count, void* userData);
  void wait(void* userData);
  bool running(void* userData);
  /// False if the system has given no thread so far.
  bool hasThreads();

 private:
  struct Task {
    DD::Image::Thread::ThreadFunction function;
    unsigned index;
    unsigned count;
    void* userData;
  };
  /// What was spawned with one pointer and has not ended.
  struct Group {
    unsigned left = 0;
    std::exception_ptr failure;
  };

  void grow(std::size_t threads);
  void serve();
  void runTask(std::unique_lock<std::mutex>& lock, const Task& task);

  std::mutex mutex_;
  std::condition_variable work_;
  std::condition_variable ended_;
  std::deque<Task> waiting_;
  std::map<void*, Group> groups_;
  std::vector<std::thread> threads_;
  std::size_t busy_ = 0;
  bool stopping_ = false;
};

}  // namespace embedded
