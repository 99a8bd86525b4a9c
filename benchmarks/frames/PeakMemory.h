#pragma once

/// How much memory a frame takes, measured in a process that makes nothing else.

#include "frames/FrameCase.h"

namespace drevin::bench {

/// Resident bytes of a process.
struct PeakMemory {
  double before = 0.0;  ///< when the render began: the program and the picture to blur
  double peak = 0.0;    ///< most at any time of the render
};

/// Renders the scene in this process. Throws std::runtime_error where the system does not tell.
PeakMemory measurePeakMemory(const FrameSize& size, double blur, unsigned threads);

/// The same in a process of its own: this program, run with --memory. Throws std::runtime_error if
/// that fails.
PeakMemory peakMemoryOfChild(const FrameSize& size, double blur, unsigned threads);

}  // namespace drevin::bench
