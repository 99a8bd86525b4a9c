#pragma once

/// The square kernel image: one float plane per channel number.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace drevin {

/// How many channel numbers there are; planes are addressed directly by number, 0 to 1023.
constexpr int dvChannelCount = 1024;

/// The floats of a plane. Copies hold the same floats until one of them is written, so that equal
/// channels take neither time nor memory of their own and are known to be equal.
///
/// Reading is safe for many threads. Access that is not const counts as writing.
class dvKernelPlane {
 public:
  void assign(std::size_t count, float value);

  std::size_t size() const { return values().size(); }
  bool empty() const { return values().empty(); }
  const float* data() const { return values().data(); }
  float* data() { return own().data(); }
  const float* begin() const { return data(); }
  const float* end() const { return data() + size(); }
  float* begin() { return data(); }
  float* end() { return data() + size(); }
  float operator[](std::size_t i) const { return values()[i]; }
  float& operator[](std::size_t i) { return own()[i]; }
  operator const std::vector<float>&() const { return values(); }

 private:
  const std::vector<float>& values() const;
  std::vector<float>& own();

  std::shared_ptr<std::vector<float>> values_;  ///< null: empty
};

/// Compares values, as vectors do.
inline bool operator==(const dvKernelPlane& a, const std::vector<float>& b) {
  return static_cast<const std::vector<float>&>(a) == b;
}

/// A square image with a float plane for each channel that is filtered; the other planes are empty.
///
/// A plane is row-major: column c of row r is at r * width + c, row 0 first. The optical centre is
/// the pixel (centre, centre).
struct dvChannelFloatBuffer {
  std::int32_t width = 0;   ///< columns, px
  std::int32_t height = 0;  ///< rows, px; equal to width
  std::int32_t centre = 0;  ///< index of the centre column and row: width / 2 rounded down
  std::int64_t count = 0;   ///< floats in each plane: width * height
  std::vector<dvKernelPlane> channels;  ///< empty, or dvChannelCount planes

  /// Makes the image side x side with planes of zeros for the channel numbers of `planes`, and for
  /// no others. A side below 1 counts as 0; numbers that are no channel number are passed over.
  void resize(int side, const std::vector<int>& planes);

  /// Back to no pixels and no planes.
  void clear();

  /// The plane of a channel: its `count` floats, or null where there is none. To be read: planes
  /// that are shared have one address. To be written: it is then no longer shared.
  const float* plane(int channel) const;
  float* plane(int channel);

  /// Makes the plane of `channel` hold the same floats as that of `from`; both numbers must be
  /// channel numbers of an image that has been sized.
  void share(int channel, int from);
};

}  // namespace drevin
