#pragma once

/// The host's threads for the imaging code.

#include "engine/Parallel.h"

namespace drevin {

class dvHostParallel : public dvParallel {
 public:
  /// `aborted` is asked from many threads.
  explicit dvHostParallel(std::function<bool()> aborted);

  int workers() const override { return workers_; }
  void forEach(int items, const std::function<void(int worker, int item)>& work) override;
  bool aborted() const override { return aborted_(); }

 private:
  int workers_;
  std::function<bool()> aborted_;
};

}  // namespace drevin
