#pragma once

/// Deep sources for the host's tests.

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "EmbeddedHost/DeepInput.h"

namespace deep {

inline const DD::Image::ChannelSet alphaAndDepths(DD::Image::Mask_Alpha | DD::Image::Mask_Deep);

/// A picture of which pixel (x, y) has (x + 2 y) % 4 samples for x >= 0, y >= 0. Sample i is a
/// point at depth 1 + i with alpha markOf(x, y, i). The box begins at (0, 0).
inline float markOf(int x, int y, int sample) {
  return 0.5F + static_cast<float>(x) / 64.0F + static_cast<float>(y) / 256.0F +
         static_cast<float>(sample) / 2048.0F;
}
inline int countOf(int x, int y) {
  return (x + 2 * y) % 4;
}
inline std::shared_ptr<embedded::DeepImage> markedDeepImage(int width = 6, int height = 4) {
  auto image = std::make_shared<embedded::DeepImage>(
      DD::Image::Format(8, 6), DD::Image::Box(0, 0, width, height), alphaAndDepths);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::vector<float> samples;
      for (int i = 0; i < countOf(x, y); ++i) {
        const float depth = 1.0F + static_cast<float>(i);
        samples.insert(samples.end(), {markOf(x, y, i), depth, depth});
      }
      image->setPixel(x, y, samples);
    }
  }
  return image;
}

/// Passes on the rows of another source; tells what is asked, and lets a test act before each row.
class WatchedSource : public embedded::DeepSource {
 public:
  struct Call {
    int y;
    int x;
    int r;
    DD::Image::ChannelSet channels;
  };

  explicit WatchedSource(std::shared_ptr<embedded::DeepSource> source)
      : source_(std::move(source)) {}

  const DD::Image::Format& format() const override { return source_->format(); }
  const DD::Image::Box& box() const override { return source_->box(); }
  const DD::Image::ChannelSet& channels() const override { return source_->channels(); }
  void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
               embedded::DeepRow& row) override {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      calls_.push_back({y, x, r, channels});
    }
    if (beforeRow) beforeRow(y);
    source_->readRow(y, x, r, channels, row);
  }
  void append(DD::Image::Hash& hash) const override { source_->append(hash); }

  std::vector<Call> calls() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
  }

  std::function<void(int)> beforeRow;

 private:
  std::shared_ptr<embedded::DeepSource> source_;
  mutable std::mutex mutex_;
  std::vector<Call> calls_;
};

}  // namespace deep
