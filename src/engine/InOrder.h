#pragma once

/// Results of many workers, used one by one in the order of their items.

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <functional>
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

  /// `use` is called for items from 0 on, by one thread at a time, and must not throw. Items are
  /// begun in about their order by `workers` threads; no more results than that are kept waiting.
  dvInOrder(std::size_t workers, Use use) : most_(workers), use_(std::move(use)) {
    // Whoever has a result must be able to leave it.
    waiting_.reserve(most_ + 1);
    used_.reserve(2 * workers + 2);
  }

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
      order_.put(item_, std::move(result));
      over_ = true;
    }

   private:
    dvInOrder& order_;
    int item_;
    bool over_ = false;
  };

  /// A result that has been used, to be filled anew, or a fresh one of these arguments.
  template <typename... Arguments>
  std::unique_ptr<Result> blank(const Arguments&... arguments) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (!used_.empty()) {
        std::unique_ptr<Result> result = std::move(used_.back());
        used_.pop_back();
        return result;
      }
    }
    return std::make_unique<Result>(arguments...);
  }

 private:
  struct Waiting {
    int item;
    std::unique_ptr<Result> result;
  };

  void put(int item, std::unique_ptr<Result> result) noexcept {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return item == due_ || waiting_.size() < most_; });
    waiting_.push_back({item, std::move(result)});
    if (inUse_) return;
    inUse_ = true;
    for (auto found = due(); found != waiting_.end(); found = due()) {
      std::unique_ptr<Result> next = std::move(found->result);
      waiting_.erase(found);
      useDue(std::move(next), lock);
    }
    inUse_ = false;
  }

  auto due() {
    return std::find_if(waiting_.begin(), waiting_.end(),
                        [&](const Waiting& waiting) { return waiting.item == due_; });
  }

  void useDue(std::unique_ptr<Result> result, std::unique_lock<std::mutex>& lock) {
    if (result != nullptr) {
      lock.unlock();
      use_(due_, *result);
      lock.lock();
      used_.push_back(std::move(result));
    }
    ++due_;
    changed_.notify_all();
  }

  std::size_t most_;
  Use use_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int due_ = 0;
  bool inUse_ = false;
  std::vector<Waiting> waiting_;
  std::vector<std::unique_ptr<Result>> used_;
};

}  // namespace drevin
