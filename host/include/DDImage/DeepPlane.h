#pragma once

/// The deep pixels of a box.

#include <cstddef>
#include <memory>
#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelMap.h"
#include "DDImage/DeepPixel.h"

namespace DD {
namespace Image {

/// Samples of all pixels of a box. Copies share the samples. Pixels are read from many threads at
/// once.
class DD_EXPORT DeepPlane {
 public:
  /// An empty box without channels.
  DeepPlane();

  const ChannelMap& channels() const { return content_->channels; }
  const Box& box() const { return content_->box; }
  DeepPixel::Ordering ordering() const { return content_->ordering; }
  /// True if the pixel is inside the box.
  bool covers(int y, int x) const;
  /// The pixel at row y and column x, inside the box; valid as long as a plane with its samples is.
  DeepPixel getPixel(int y, int x) const;
  std::size_t getSampleCount(int y, int x) const;
  std::size_t getTotalSampleCount() const;

 protected:
  struct Content {
    ChannelMap channels;
    Box box;
    DeepPixel::Ordering ordering = DeepPixel::eUnordered;
    std::vector<std::size_t> ends;  ///< of the pixels' values, row by row
    std::vector<float> values;
  };

  explicit DeepPlane(std::shared_ptr<Content> content) : content_(std::move(content)) {}
  Content& content() { return *content_; }

 private:
  std::size_t index(int y, int x) const;

  std::shared_ptr<Content> content_;
};

/// A plane that is being filled: pixel by pixel, from left to right and from the bottom row up.
class DD_EXPORT DeepOutputPlane : public DeepPlane {
 public:
  DeepOutputPlane() = default;
  DeepOutputPlane(const ChannelSet& channels, const Box& box,
                  DeepPixel::Ordering ordering = DeepPixel::eUnordered);

  /// Adds the next pixel, with the plane's channels.
  void addPixel(const DeepOutPixel& pixel) { addValues(pixel.data(), pixel.size()); }
  void addPixel(const DeepPixel& pixel) { addValues(pixel.data(), pixel.getDataCount()); }
  /// Adds a pixel without samples.
  void addHole() { addValues(nullptr, 0); }

  // embedded host
  /// Adds the next pixel from `count` floats.
  void addValues(const float* values, std::size_t count);
  /// Pixels that were not added yet become empty.
  void fill();
};

}  // namespace Image
}  // namespace DD
