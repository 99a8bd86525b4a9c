#pragma once

/// Splats ready to be added: what every source pixel or sample scatters, made once a frame.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace drevin {

/// One splat: the kernels of two neighbouring radii, each with its share, centred on a pixel.
///
///   colour[c](p) += (near * K_radius(p) + far * K_radius+1(p)) * value[c]
///   weight(p)    += (near * K_radius(p) + far * K_radius+1(p))
///
/// The source's own weight is in the shares. A share of 0 adds nothing; no share is negative, and
/// shares and values are finite: others are special splats (SplatLine.h).
struct dvSplatRecord {
  std::int32_t x = 0;       ///< column of the centre; may lie outside the picture
  std::int32_t radius = 0;  ///< of the nearer size
  float near = 0.0F;        ///< share of the kernel of `radius`
  float far = 0.0F;         ///< share of the kernel of `radius` + 1
};

/// Sums of greater values must not be told by where they begin and end: a double that has held one
/// has lost what of others a picture shows.
constexpr float dvGreatValue = 1e9F;

/// Places [begin, end) in the records of a row.
struct dvRecordRange {
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// The splats that are centred on one row, slice by slice.
struct dvSplatRow {
  std::vector<std::uint32_t> sliceBegin;  ///< slices + 1 places in `records`
  std::vector<dvSplatRecord> records;     ///< of a slice by ascending column
  std::vector<float> values;              ///< one for each channel, record after record
  bool hasGreat = false;  ///< whether a value times its shares is above dvGreatValue

  /// Values of a record.
  std::size_t stride() const { return records.empty() ? 0 : values.size() / records.size(); }
  std::size_t begin(std::size_t slice) const { return sliceBegin[slice]; }
  std::size_t end(std::size_t slice) const { return sliceBegin[slice + 1]; }
  /// Puts the records of each slice in order, with their values; those of a column stay in theirs.
  void sortByColumn();
  /// Those of a slice whose centres are in the columns [left, right).
  dvRecordRange within(std::size_t slice, std::int64_t left, std::int64_t right) const;
};

}  // namespace drevin
