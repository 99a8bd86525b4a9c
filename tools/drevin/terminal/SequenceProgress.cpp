#include "terminal/SequenceProgress.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "terminal/ProgressBar.h"
#include "terminal/StandardError.h"
#include "terminal/Terminal.h"

namespace drevintool {
namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

SequenceProgress::SequenceProgress(bool quiet, std::size_t frames, std::string noun)
    : quiet_(quiet),
      terminal_(drawsOnError()),
      noun_(std::move(noun)),
      shares_(frames),
      start_(Clock::now()),
      told_(start_) {}

SequenceProgress::~SequenceProgress() {
  clear();
}

double SequenceProgress::share() const {
  return shares_.empty() ? 1.0 : sum_ / static_cast<double>(shares_.size());
}

// A frame is not done before it is written.
void SequenceProgress::show(std::size_t frame, const embedded::Progress& progress) {
  constexpr double kMostBeforeDone = 0.99;
  const std::lock_guard<std::mutex> lock(mutex_);
  advance(frame, std::min(shareOf(progress), kMostBeforeDone));
  tell();
}

void SequenceProgress::frameDone(std::size_t frame) {
  const std::lock_guard<std::mutex> lock(mutex_);
  ++done_;
  advance(frame, 1.0);
  tell();
}

// Stages of a frame begin anew at 0: the farthest counts.
void SequenceProgress::advance(std::size_t frame, double share) {
  float& known = shares_[frame];
  const auto farther = std::max(known, static_cast<float>(share));
  sum_ += static_cast<double>(farther) - static_cast<double>(known);
  known = farther;
  constexpr int kMostBeforeEnd = 99;
  percent_ = std::clamp(static_cast<int>(this->share() * 100.0), percent_,
                        std::max(percent_, kMostBeforeEnd));
}

void SequenceProgress::tell() {
  const double interval = terminal_ ? 0.1 : 1.0;
  if (quiet_ || secondsSince(told_) < interval) return;
  told_ = Clock::now();
  if (terminal_) {
    draw(share());
  } else {
    writeStandardError(fmt::format("Progress: {}%\n", percent_));
  }
}

void SequenceProgress::draw(double share) {
  const double left = share > 0.0 ? secondsSince(start_) * (1.0 - share) / share : -1.0;
  const std::size_t frame = std::min(done_ + 1, shares_.size());
  const std::string text = fmt::format("{}{}: {}/{}{}", kClearLine, noun_, frame, shares_.size(),
                                       barText(share, fmt::format("{}%", percent_), left));
  writeStandardError(text);
  drawn_ = true;
}

void SequenceProgress::clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (drawn_) writeStandardError(kClearLine);
  drawn_ = false;
}

void SequenceProgress::finish() {
  clear();
  if (!quiet_ && !terminal_) writeStandardError("Progress: 100%\n");
}

}  // namespace drevintool
