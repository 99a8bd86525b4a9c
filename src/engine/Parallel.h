#pragma once

/// Work spread over processors, by whoever has threads to lend.

#include <functional>

namespace drevin {

class dvParallel {
 public:
  virtual ~dvParallel() = default;

  /// How many items may run at once; at least 1.
  virtual int workers() const = 0;
  /// Runs work(worker, item) for every item from 0 to `items` - 1, in about that order, and returns
  /// when all are done. Workers are numbered from 0 to workers() - 1; no two items run at once
  /// under the same number. Stops early when the work is no longer wanted; no item is then passed
  /// over: those before one that was begun have been begun too, and may be waited for.
  virtual void forEach(int items, const std::function<void(int worker, int item)>& work) = 0;
  /// True when the result is no longer wanted.
  virtual bool aborted() const = 0;
};

/// Work on the calling thread alone.
class dvSerial : public dvParallel {
 public:
  int workers() const override { return 1; }
  void forEach(int items, const std::function<void(int worker, int item)>& work) override {
    for (int item = 0; item < items; ++item)
      work(0, item);
  }
  bool aborted() const override { return false; }
};

}  // namespace drevin
