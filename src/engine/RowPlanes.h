#pragma once

/// The planes of a row in groups that fit in registers. For the vector code alone.

#include "engine/RowCode.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

template <class Adder>
void addRuns(const Adder& adder, const dvRowRun* runs, int count) {
  for (int i = 0; i < count; ++i)
    adder.add(runs[i]);
}

/// Adds the runs with Adder<Values, Weight>(target, first plane), where Values is the number of
/// value planes of a group and Weight tells whether the weight plane is in it, the last.
template <template <int, bool> class Adder>
void eachPlaneGroup(const dvRowRun* runs, int count, const dvRowTarget& target) {
  int first = 0;
  for (; target.channels - first > 6; first += 4)
    addRuns(Adder<4, false>(target, first), runs, count);
  switch (target.channels - first) {
    case 1:
      return addRuns(Adder<1, true>(target, first), runs, count);
    case 2:
      return addRuns(Adder<2, true>(target, first), runs, count);
    case 3:
      return addRuns(Adder<3, true>(target, first), runs, count);
    case 4:
      return addRuns(Adder<4, true>(target, first), runs, count);
    case 5:
      return addRuns(Adder<5, true>(target, first), runs, count);
    default:
      return addRuns(Adder<6, true>(target, first), runs, count);
  }
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin
