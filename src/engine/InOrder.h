#pragma once

/// Results of many workers, used one by one in the order of their items.

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace drevin {

/// A worker leaves its result and goes on; whoever brings the one that is due uses it and all that
/// follow it and are there. So nobody waits for others' items, unless too many results have piled
/// up.
template <typename Result>
class dvInOrder {
 public:
  using Use = std::function<void(int item, Result& result)>;

  /// `use` is called for items from 0 on, by one thread at a time, and must not throw. No more
  /// than `most` results, at least 1, are kept waiting.
  dvInOrder(std::size_t most, Use use) : most_(most), use_(std::move(use)) {}

  /// One worker's item. An item that ends without a result is passed over.
  class Turn {
   public:
    Turn(dvInOrder& order, int item) : order_(order), item_(item) {}
    ~Turn() {
      if (!over_) order_.put(item_, nullptr);
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    void end(std::unique_ptr<Result> result) {
      over_ = true;
      order_.put(item_, std::move(result));
    }

   private:
    dvInOrder& order_;
    int item_;
    bool over_ = false;
  };

  /// A result that has been used, to be filled anew, or a fresh one.
  std::unique_ptr<Result> blank() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (!used_.empty()) {
        std::unique_ptr<Result> result = std::move(used_.back());
        used_.pop_back();
        return result;
      }
    }
    return std::make_unique<Result>();
  }

 private:
  void put(int item, std::unique_ptr<Result> result) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return item == due_ || waiting_.size() < most_; });
    waiting_[item] = std::move(result);
    if (inUse_) return;
    inUse_ = true;
    while (!waiting_.empty() && waiting_.begin()->first == due_)
      useFirst(lock);
    inUse_ = false;
  }

  void useFirst(std::unique_lock<std::mutex>& lock) {
    std::unique_ptr<Result> result = std::move(waiting_.begin()->second);
    const int item = due_;
    if (result != nullptr) {
      lock.unlock();
      use_(item, *result);
      lock.lock();
      used_.push_back(std::move(result));
    }
    waiting_.erase(item);
    ++due_;
    changed_.notify_all();
  }

  std::size_t most_;
  Use use_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int due_ = 0;
  bool inUse_ = false;
  std::map<int, std::unique_ptr<Result>> waiting_;
  std::vector<std::unique_ptr<Result>> used_;
};

}  // namespace drevin
