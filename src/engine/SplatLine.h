#pragma once

/// A source row as splats: every source pixel or sample turned into kernels, shares and values
/// once, however many output rows it reaches.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "defocus/Splat.h"
#include "engine/NotFiniteRuns.h"
#include "engine/SplatGroups.h"
#include "engine/SplatRecords.h"

namespace drevin {

/// A splat that sums cannot treat like others: a share that is not finite, or a value that is not
/// and meets a kernel that is not, reaches every pixel of the kernel's square, zero kernel values
/// included.
struct dvSpecialSplat {
  std::uint32_t slice = 0;
  std::int32_t x = 0;
  std::int32_t radius[2] = {0, 0};
  float share[2] = {0.0F, 0.0F};  ///< 0 or less: not splatted
  std::vector<float> values;      ///< one for each channel of the group
};

/// Splats of a source row that are centred on one row.
struct dvCentredSplats {
  int centreY = 0;
  dvSplatRow row;
  std::vector<dvSpecialSplat> specials;
  std::vector<dvNotFiniteRun> notFinite;  ///< of records that hold 0 in the place of such values
  bool lastIsOne = false;                 ///< the last value of all splats, special ones too
};

/// What a source row adds, for each group. Without a chromatic shift each group has one entry, on
/// the row itself.
struct dvSplatLine {
  int sourceY = 0;
  std::vector<std::vector<dvCentredSplats>> groups;

  /// Memory that its lists take, bytes; what they have reserved counts.
  std::size_t bytes() const;
};

/// What the splats of all lines have in common.
struct dvLineSettings {
  dvSplatSettings splat;
  const dvKernelBank* bank = nullptr;
  std::size_t slices = 1;
  std::vector<int> channels;  ///< splatted, ascending numbers
  std::vector<dvSplatGroup> groups;
};

/// Collects the sources of one row; takes the place of the row code's splatter.
///
/// Sources in no slice, and shares of 0 or less, are dropped. The values have their bloom.
class dvSplatLineMaker {
 public:
  /// `settings` must outlive this. `expected`: about how many sources come, if that is known.
  dvSplatLineMaker(const dvLineSettings& settings, int sourceY, std::size_t expected = 0);

  const std::vector<int>& channels() const { return settings_.channels; }
  /// Value to splat of a channel number, for the splats that follow.
  float& pixel(int channel) { return pixel_[static_cast<std::size_t>(channel)]; }
  /// Adds one source pixel with the values of pixel(); its own `pixel` is not read. Sources of a
  /// slice come by ascending column.
  void splat(const dvSplatSource& source);

  /// The line, which reserves little more than it holds, for pictures keep many; this is then
  /// empty.
  dvSplatLine line();

 private:
  /// Splats of one group that are centred on one row, in the order that they came.
  struct Centred {
    explicit Centred(int centreY) : y(centreY) {}
    int y;
    bool inOrder = true;  ///< no slice is followed by a smaller one
    bool lastIsOne = true;
    bool hasGreat = false;
    std::size_t count = 0;              ///< of records; the lists have room for more
    std::vector<std::uint32_t> slices;  ///< by record
    std::vector<dvSplatRecord> records;
    std::vector<float> values;
    std::vector<dvSpecialSplat> specials;
    std::vector<dvNotFiniteRun> notFinite;
  };
  /// Rows of a group, ascending. Most sources go where the last one went.
  struct Group {
    std::vector<Centred> rows;
    std::size_t last = 0;
  };
  struct Kernels {
    std::int32_t radius[2];
    float share[2];
  };

  Kernels kernelsOf(const dvSplatSource& source) const;
  /// Takes a source with a share or a value that is not finite; whether it is still a record, with
  /// 0 for such values.
  bool addNotFinite(const dvSplatGroup& group, std::uint32_t slice, int x, const Kernels& kernels,
                    Centred& centred) const;
  static void makeRoom(std::size_t records, std::size_t channels, Centred& centred);
  /// Puts the group's values, 0 for those that are not finite, behind those of all records; whether
  /// all are finite.
  bool takeValues(const dvSplatGroup& group, Centred& centred, float& greatest) const;
  void addToGroup(const dvSplatGroup& group, const dvSplatSource& source, const Kernels& kernels,
                  Group& made) const;
  Centred& rowAt(int y, std::size_t channels, Group& group) const;
  Centred& otherRowAt(int y, std::size_t channels, Group& group) const;
  void fillValues(const dvSplatSource& source);
  static dvSplatRow sorted(Centred& centred, std::size_t channels, std::size_t slices);

  const dvLineSettings& settings_;
  int sourceY_;
  std::size_t expected_;
  std::vector<float> pixel_;   ///< by channel number
  std::vector<float> values_;  ///< of the current source, by channel place
  std::vector<Group> groups_;
};

}  // namespace drevin
