#include "StageClock.h"

namespace embedded {

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

void StageClock::closeStage() {
  if (running_) stages_.back().seconds = secondsSince(since_);
  running_ = false;
}

void StageClock::begin(const std::string& name) {
  const std::lock_guard<std::mutex> lock(mutex_);
  closeStage();
  stages_.push_back({name, 0.0});
  since_ = Clock::now();
  running_ = true;
}

void StageClock::end() {
  const std::lock_guard<std::mutex> lock(mutex_);
  closeStage();
}

std::vector<Stage> StageClock::stages() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<Stage> stages = stages_;
  if (running_) stages.back().seconds = secondsSince(since_);
  return stages;
}

std::string StageClock::current() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return stages_.empty() ? std::string() : stages_.back().name;
}

}  // namespace embedded
