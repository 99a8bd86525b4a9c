#pragma once

/// Pictures in memory as inputs of a node.

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "DDImage/Format.h"
#include "DDImage/Hash.h"
#include "DDImage/Iop.h"

namespace embedded {

/// One channel of a picture: box.w() x box.h() floats, row-major, the bottom row first.
using Plane = std::vector<float>;

/// A picture in memory: its format, its bounding box and one plane for each channel.
struct Image {
  DD::Image::Format format;
  DD::Image::Box box;
  std::map<DD::Image::Channel, std::shared_ptr<const Plane>> planes;
};

/// Serves a picture as an operator. Rows inside the box are handed out without copying; outside it
/// the nearest edge pixel repeats; channels that the picture lacks read 0, as does an empty box.
class DD_EXPORT ImageInput : public DD::Image::Iop {
 public:
  /// Throws std::invalid_argument if a plane has not one value for each pixel of the box.
  explicit ImageInput(Image image);
  ~ImageInput() override;

  const char* Class() const override;
  const char* node_help() const override;
  /// Adds the whole picture. What stands for it is made the first time: planes do not change.
  void append(DD::Image::Hash& hash) override;
  const Image& image() const { return image_; }

 protected:
  void _validate(bool for_real) override;
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& row) override;
  const float* directRow(int y, DD::Image::Channel z) const override;

 private:
  DD::Image::Hash contentHash() const;

  Image image_;
  std::once_flag hashed_;
  DD::Image::Hash content_;
};

}  // namespace embedded
