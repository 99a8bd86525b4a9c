#include "ThreadPool.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <system_error>

#include "EmbeddedHost/Render.h"

namespace embedded {

namespace {

std::atomic<std::uint64_t> calls{0};

}  // namespace

std::uint64_t spawnCalls() noexcept {
  return calls;
}

ThreadPool& ThreadPool::instance() {
  static ThreadPool pool;
  return pool;
}

ThreadPool::~ThreadPool() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  work_.notify_all();
  for (std::thread& thread : threads_)
    thread.join();
}

void ThreadPool::grow(std::size_t threads) {
  try {
    while (threads_.size() < threads)
      threads_.emplace_back([this] { serve(); });
  } catch (const std::system_error&) {
    // The system gives no more: the tasks share what there is, and waiting threads help.
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

void ThreadPool::spawn(DD::Image::Thread::ThreadFunction function, unsigned count, void* userData) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    Group& group = groups_[userData];
    // Counted one by one, so that a failed allocation leaves nothing counted that is not queued.
    for (unsigned i = 0; i < count; ++i, ++group.left)
      waiting_.push_back({function, i, count, userData});
    grow(busy_ + waiting_.size());
  }
  work_.notify_all();
}

void ThreadPool::serve() {
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    work_.wait(lock, [&] { return stopping_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    const Task task = waiting_.front();
    waiting_.pop_front();
    ++busy_;
    runTask(lock, task);
    --busy_;
  }
}

void ThreadPool::runTask(std::unique_lock<std::mutex>& lock, const Task& task) {
  lock.unlock();
  std::exception_ptr failure;
  try {
    task.function(task.index, task.count, task.userData);
  } catch (...) {
    failure = std::current_exception();
  }
  lock.lock();
  Group& group = groups_[task.userData];
  --group.left;
  if (failure && !group.failure) group.failure = failure;
  if (group.left == 0) ended_.notify_all();
}

void ThreadPool::wait(void* userData) {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto isOurs = [&](const Task& task) { return task.userData == userData; };
  while (groups_[userData].left > 0) {
    const auto task = std::find_if(waiting_.begin(), waiting_.end(), isOurs);
    if (task != waiting_.end()) {
      const Task own = *task;
      waiting_.erase(task);
      runTask(lock, own);
    } else {
      ended_.wait(lock, [&] { return groups_[userData].left == 0; });
    }
  }
  const std::exception_ptr failure = groups_[userData].failure;
  groups_.erase(userData);
  if (failure) std::rethrow_exception(failure);
}

bool ThreadPool::running(void* userData) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto group = groups_.find(userData);
  return group != groups_.end() && group->second.left > 0;
}

bool ThreadPool::hasThreads() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return !threads_.empty();
}

}  // namespace embedded

namespace DD {
namespace Image {

bool Thread::spawn(ThreadFunction function, unsigned nThreads, void* userData) {
  ++embedded::calls;
  if (nThreads == 0) return false;
  embedded::ThreadPool::instance().spawn(function, nThreads, userData);
  return true;
}

void Thread::wait(void* userData) {
  embedded::ThreadPool::instance().wait(userData);
}

bool Thread::running(void* userData) {
  return embedded::ThreadPool::instance().running(userData);
}

}  // namespace Image
}  // namespace DD
