#pragma once

/// The square kernel image: one float plane per channel number.

#include <cstdint>
#include <vector>

namespace drevin {

/// How many channel numbers there are; planes are addressed directly by number, 0 to 1023.
constexpr int dvChannelCount = 1024;

/// A square image with a float plane for each channel that is filtered; the other planes are empty.
///
/// A plane is row-major: column c of row r is at r * width + c, row 0 first. The optical centre is
/// the pixel (centre, centre).
struct dvChannelFloatBuffer {
  std::int32_t width = 0;   ///< columns, px
  std::int32_t height = 0;  ///< rows, px; equal to width
  std::int32_t centre = 0;  ///< index of the centre column and row: width / 2 rounded down
  std::int64_t count = 0;   ///< floats in each plane: width * height
  std::vector<std::vector<float>> channels;  ///< empty, or dvChannelCount planes

  /// Makes the image side x side with planes of zeros for the channel numbers of `planes`, and for
  /// no others. A side below 1 counts as 0; numbers that are no channel number are passed over.
  void resize(int side, const std::vector<int>& planes);

  /// Back to no pixels and no planes.
  void clear();

  /// The plane of a channel: its `count` floats, or null where there is none.
  const float* plane(int channel) const;
  float* plane(int channel);
};

}  // namespace drevin
