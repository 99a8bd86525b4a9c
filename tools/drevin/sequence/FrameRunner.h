#pragma once

/// Many frames, one after the other or some at a time.

#include <cstddef>
#include <functional>
#include <memory>

#include "sequence/FrameOutcome.h"

namespace drevintool {

/// What there is to do for one frame: first read(), then finish(), perhaps on another thread. What
/// they throw is the frame's failure.
class FrameWork {
 public:
  virtual ~FrameWork() = default;
  virtual void read() = 0;
  virtual FrameOutcome finish() = 0;
};

struct FrameRunOptions {
  unsigned inFlight = 1;          ///< frames that are finished at a time
  bool goOnAfterFailure = false;  ///< else no frame begins after one has failed
  /// Told of a frame that is done once more, on any thread; may be empty.
  std::function<void(std::size_t)> onceMore = nullptr;
};

/// Works on the frames 0 to `count` - 1. A thread of its own reads them in order, at most
/// `inFlight` frames ahead of those that are being finished; these begin in order. `make` is called
/// on the reading thread, `ended` for one frame at a time, on any thread. After a signal no frame
/// begins. A frame that cannot be read ahead is read again in its turn, and one that fails for want
/// of memory is done once more from the start, while no other one is worked on or held. When frames
/// stop after a failure, all before the failed one have ended too.
void runFrames(std::size_t count, const FrameRunOptions& options,
               const std::function<std::unique_ptr<FrameWork>(std::size_t)>& make,
               const std::function<void(std::size_t, FrameOutcome)>& ended);

}  // namespace drevintool
