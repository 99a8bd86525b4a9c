#pragma once

/// Progress of a sequence on standard error: a bar on a terminal, lines elsewhere.

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "EmbeddedHost/Render.h"

namespace drevintool {

/// On a terminal that can be drawn on "Frame: 12/100 [====   ] 12%, 40 s left", drawn over itself;
/// elsewhere lines "Progress: 12%" of the whole sequence, at most one a second; the number never
/// falls. Frames may be shown from several threads.
class SequenceProgress {
 public:
  /// `noun` is what the bar calls a frame.
  SequenceProgress(bool quiet, std::size_t frames, std::string noun = "Frame");
  ~SequenceProgress();
  SequenceProgress(const SequenceProgress&) = delete;
  SequenceProgress& operator=(const SequenceProgress&) = delete;

  /// How far the frame of that place in the sequence is.
  void show(std::size_t frame, const embedded::Progress& progress);
  void frameDone(std::size_t frame);
  /// Takes the bar away, so that a message can be printed.
  void clear();
  /// The whole sequence is done.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;

  void advance(std::size_t frame, double share);
  void tell();
  void draw(double share);
  double share() const;

  std::mutex mutex_;
  const bool quiet_;
  const bool terminal_;
  const std::string noun_;
  bool drawn_ = false;
  std::vector<float> shares_;  // of each frame
  double sum_ = 0.0;
  std::size_t done_ = 0;
  int percent_ = 0;
  const Clock::time_point start_;
  Clock::time_point told_;
};

}  // namespace drevintool
