#pragma once

/// How long each stage of a render took.

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "EmbeddedHost/Render.h"

namespace embedded {

/// Stages follow one another; any thread may begin the next.
class StageClock {
 public:
  /// Ends the current stage and begins the next.
  void begin(const std::string& name);
  void end();
  /// All stages so far; the current one up to now.
  std::vector<Stage> stages() const;
  /// Name of the current stage, or of the last.
  std::string current() const;

 private:
  using Clock = std::chrono::steady_clock;

  void closeStage();

  mutable std::mutex mutex_;
  std::vector<Stage> stages_;
  bool running_ = false;
  Clock::time_point since_;
};

}  // namespace embedded
