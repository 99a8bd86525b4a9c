#pragma once

/// Rows of the literal frame, to which whole frames are held more tightly than a picture has to be.

#include <map>
#include <vector>

#include "engine/EngineFrame.h"

namespace drevin::test {

/// What a frame of the engine may differ from the literal one by, in parts of what a picture may:
/// the rest is for what comes before and after.
constexpr double engineShare = 0.25;
/// The same where everything is transformed, single splats too, which no frame of use does.
constexpr double transformedShare = 0.3;

class LiteralComparison {
 public:
  /// `rows` over the width of the format. An output type that splats; the picture's alpha is 1
  /// everywhere, so that what nothing covers is known by it.
  LiteralComparison(const LiteralScene& scene, const std::vector<int>& rows);

  /// The largest difference of a well-conditioned value, in parts of what is allowed. Infinite
  /// where only one of the two is finite, and where a pixel that nothing covers is not exactly 0.
  double worstDifference(const EngineFrame& frame, const dvFramePlanes& planes) const;
  /// Of all values the share that is well-conditioned.
  double comparableShare() const;

 private:
  std::map<int, LiteralRow> rows_;  ///< by row
};

}  // namespace drevin::test
