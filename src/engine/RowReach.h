#pragma once

/// How far the splats of a source row reach, found out once: most rows are out of most splats'
/// reach, and asking each record would take longer than adding the others.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/SplatRecords.h"

namespace drevin {

/// The kernels that a record adds, as a number that grows with its reach: records of one kind have
/// the same radius and the same shares above 0. 16 bits hold any radius whose kernels fit in
/// memory.
///
///   kind = 4 * (reach + 1) + 2 * (far > 0) + (near > 0)
///
/// The reach is the number of rows, above and below the centre; -1 for a record that adds nothing.
using dvSplatKind = std::uint16_t;

inline int leastKind(int reach) {
  return 4 * (reach + 1);
}
inline dvSplatKind splatKind(const dvSplatRecord& record) {
  const int near = static_cast<int>(record.near > 0.0F);
  const int far = static_cast<int>(record.far > 0.0F);
  const int reach = (near | far) != 0 ? record.radius + far : -1;
  return static_cast<dvSplatKind>(leastKind(reach) + 2 * far + near);
}
inline bool kindHasNear(int kind) {
  return (kind & 1) != 0;
}
inline bool kindHasFar(int kind) {
  return (kind & 2) != 0;
}
inline int kindReach(int kind) {
  return kind / 4 - 1;
}
/// Of the record's kernel `radius`.
inline int kindRadius(int kind) {
  return kindReach(kind) - (kindHasFar(kind) ? 1 : 0);
}

/// The kinds of the records of a row, and what those of a block of them have in common.
class dvRowReach {
 public:
  struct Block {
    dvSplatKind least = 0;
    dvSplatKind most = 0;
  };
  /// Records of a block.
  static constexpr std::size_t blockSize = 64;

  /// Of a row without records.
  dvRowReach() = default;
  explicit dvRowReach(const dvSplatRow& row);

  /// By record.
  const dvSplatKind* kinds() const { return kinds_.data(); }
  /// The block of a record.
  const Block& block(std::size_t record) const { return blocks_[record / blockSize]; }
  /// The record behind the block of a record.
  static std::size_t blockEnd(std::size_t record) { return (record / blockSize + 1) * blockSize; }

  /// The first record from `begin` on whose block reaches `distance` rows; `end` if there is none.
  std::size_t next(std::size_t begin, std::size_t end, int distance) const;
  /// Largest reach of the blocks that hold the records [begin, end); -1 for none.
  int largest(std::size_t begin, std::size_t end) const;

 private:
  std::vector<dvSplatKind> kinds_;
  std::vector<Block> blocks_;
};

}  // namespace drevin
