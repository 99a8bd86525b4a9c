#pragma once

/// A picture that tells of every row that is read of it.

#include <functional>
#include <utility>

#include "EmbeddedHost/ImageInput.h"

namespace drevin::test {

class WatchedImage : public embedded::ImageInput {
 public:
  /// Called with the row and the channel, before they are handed out, by whichever thread reads.
  using Watch = std::function<void(int y, DD::Image::Channel z)>;

  WatchedImage(embedded::Image image, Watch watch)
      : ImageInput(std::move(image)), watch_(std::move(watch)) {}

 protected:
  const float* directRow(int y, DD::Image::Channel z) const override {
    watch_(y, z);
    return ImageInput::directRow(y, z);
  }

 private:
  Watch watch_;
};

}  // namespace drevin::test
