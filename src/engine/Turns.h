#pragma once

/// Lets workers do one thing each in the order of their items.

#include <condition_variable>
#include <mutex>

namespace drevin {

class dvTurns {
 public:
  /// The turn of an item, from 0 on. Ends with it, whatever happens: the next waits for that.
  class Turn {
   public:
    Turn(dvTurns& turns, int item) : turns_(turns), item_(item) {}
    ~Turn() {
      wait();
      const std::lock_guard<std::mutex> lock(turns_.mutex_);
      ++turns_.next_;
      turns_.changed_.notify_all();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    /// Until the turns of all items before have ended.
    void wait() {
      std::unique_lock<std::mutex> lock(turns_.mutex_);
      turns_.changed_.wait(lock, [&] { return turns_.next_ == item_; });
    }

   private:
    dvTurns& turns_;
    int item_;
  };

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int next_ = 0;
};

}  // namespace drevin
