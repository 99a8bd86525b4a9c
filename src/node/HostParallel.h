#pragma once

/// The host's threads for the imaging code.

#include <atomic>
#include <functional>

#include "engine/Parallel.h"

namespace drevin {

class dvHostParallel : public dvParallel {
 public:
  /// `aborted` is asked from many threads.
  explicit dvHostParallel(std::function<bool()> aborted);

  int workers() const override { return workers_; }
  void forEach(int items, const std::function<void(int worker, int item)>& work) override;
  /// Once true it stays so: work may have been left out, whatever the host says later.
  bool aborted() const override;

 private:
  int workers_;
  std::function<bool()> aborted_;
  mutable std::atomic<bool> wasAborted_{false};
};

}  // namespace drevin
