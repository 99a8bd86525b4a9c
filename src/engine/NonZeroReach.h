#pragma once

/// Where splats can leave anything but zero.
///
/// What goes through a transform is spread by its rounding over all that its tile reaches, where
/// the sum itself is exactly zero: around an object on black, in the alpha beyond an element, in a
/// channel that is dark. A kernel row is zero outside a stretch that is known, so that what each
/// row of sources can reach of an output row is
///
///   the union over sources with value[c] != 0 of  [x + begin_R(dy), x + end_R(dy))
///
///   begin, end  the stretch of the kernel of radius R, dy rows above its centre, from the centre

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/FrameBox.h"
#include "engine/GroupRows.h"
#include "engine/KernelTable.h"
#include "engine/Parallel.h"

namespace drevin {

/// Stretches of like sources that are told apart in a row; where there are more, they are taken
/// together as squares, and what is found to be reached is more than is.
constexpr std::size_t dvMostReachRuns = 64;

/// The reach of all slices of a group, by plane: values, then weight.
class dvNonZeroReach {
 public:
  /// `channels`: how many of the splats' values are looked at. After an abort it must not be asked.
  /// Rows and kernels must outlive this.
  dvNonZeroReach(const dvGroupRows& rows, const dvKernelTable& kernels, std::size_t channels,
                 dvParallel& parallel);

  /// Which of the columns [left, right) of output row y the plane may have anything but zero in:
  /// 1 or 0 for each. Values that are not finite, and what special splats hold, count as not zero.
  std::vector<std::uint8_t> row(std::size_t plane, int y, int left, int right) const;

 private:
  /// Sources [begin, end) of a row.
  struct Run {
    std::int64_t begin;
    std::int64_t end;
    std::int32_t radius;  ///< the smaller of two that share a splat
    bool isPair;          ///< with the kernel of the next radius
    bool isSquare;        ///< all of the kernel's square counts
  };
  using Runs = std::vector<Run>;

  static void append(const Run& next, Runs& runs);
  static void takeTogether(Runs& runs);
  void addRecords(const dvSplatRow& splats, std::vector<Runs>& planes) const;
  static void addOthers(const dvCentredSplats& splats, std::vector<Runs>& planes);
  /// Begin and end of what a run reaches, from its columns; the end is below the begin for nothing.
  dvColumnSpan reachOf(const Run& run, int dy) const;

  const dvGroupRows& rows_;
  const dvKernelTable& kernels_;
  std::size_t channels_;
  std::vector<std::vector<Runs>> runs_;  ///< by row, then by plane
};

}  // namespace drevin
