#pragma once

/// A picture as plain planes: what every input of the literal frame is.

#include <map>
#include <vector>

namespace drevin::test {

/// Columns [left, right) and rows [bottom, top), apart from the format.
struct LiteralBox {
  int left = 0;
  int bottom = 0;
  int right = 0;
  int top = 0;
};

/// Planes by channel number, row-major over the box, the bottom row first.
struct LiteralPicture {
  int formatWidth = 0;   ///< px
  int formatHeight = 0;  ///< px
  LiteralBox box;
  std::map<int, std::vector<float>> planes;

  /// One pixel: outside the box the nearest edge pixel repeats; a missing channel is 0.
  float at(int column, int row, int channel) const;
};

}  // namespace drevin::test
