#pragma once

/// The finished defocus of the requested box, made when the node opens.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Row.h"
#include "deep/DeepRecords.h"
#include "engine/FrameMaker.h"

namespace drevin {

/// Makes the splats of a row that has been read as source row `sourceY`, for each mode.
using dvRowSplats = std::function<std::vector<dvSplatLine>(int sourceY)>;

/// Where the splats of a picture come from.
struct dvLineSource {
  /// Rows that are read; source rows below and above them repeat the first and the last.
  int firstRow = 0;
  int lastRow = 0;
  /// One for each picture that is made; a flat picture has one, of dvDeepMode::Both.
  std::vector<dvDeepMode> modes;
  /// Reads a row, for its splats as they are seen from the source rows that show it. Null if it is
  /// not to be had. Called by many threads at once, once for each row.
  std::function<dvRowSplats(int row)> read;
};

/// Memory of the splats that are held at a time, bytes.
constexpr std::size_t dvBandBytes = std::size_t{192} << 20;

class dvPreparedPicture {
 public:
  /// Makes the columns and rows of `box`, in bands of rows: a band grows until the splats that
  /// reach it take `bandBytes`, and has as many rows as `padding` or more. So memory follows the
  /// band and the reach of the blur, however many samples a picture has. Every row is read once.
  /// Calls `progress` on this thread with the share that is done. After an abort there is no
  /// picture.
  void make(const dvLineSettings& settings, const dvLineSource& source, int padding,
            const DD::Image::Box& box, dvParallel& parallel,
            const std::function<void(double)>& progress, std::size_t bandBytes = dvBandBytes);
  void clear();

  /// Whether columns [x, r) of row y are there for the mode and all of `channels`.
  bool has(int y, int x, int r, const DD::Image::ChannelSet& channels, dvDeepMode mode) const;
  /// Copies them; they must be there.
  void copy(int y, int x, int r, const DD::Image::ChannelSet& channels, dvDeepMode mode,
            DD::Image::Row& out) const;

 private:
  dvFrameBox box_;
  std::vector<int> channels_;  ///< numbers, by plane
  std::map<dvDeepMode, dvFramePlanes> modes_;
};

}  // namespace drevin
