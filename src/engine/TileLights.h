#pragma once

/// Splats of a tile that must not go through its transform: they would drown the others in their
/// rounding.

#include <cmath>
#include <cstddef>
#include <vector>

#include "engine/GroupRows.h"

namespace drevin {

/// A value this many times the mean of its tile is a light: it would drown its neighbours in the
/// rounding of a transform, and is splatted by itself.
constexpr float dvLightRatio = 16.0F;
/// A value above this is a light in any case: the sums of a transform are of all values of a tile,
/// times its length squared, and must stay finite.
constexpr float dvGreatestTransformed = 1e25F;
/// A share above this is a light too. Shares are parts of a pixel, 1 at most, but for those of deep
/// samples whose merge has left negative coverage before them: these may be of any size.
constexpr float dvGreatestShare = 4.0F;

/// Some splats of a row, at least one.
struct dvTilePart {
  const dvGroupRows::Row* row;
  dvRecordRange records;

  const dvSplatRow& splats() const { return row->splats->row; }
};

/// Above which a tile's splats are lights:
///
///   |share * value[c]| > min(16 * mean of |share * value[c]|, 1e25)   or
///   share > min(16 * mean share, 4)
class dvTileLights {
 public:
  dvTileLights() = default;
  /// Of a tile's splats; `channels`: how many of their values are looked at.
  dvTileLights(const std::vector<dvTilePart>& parts, std::size_t channels);

  bool isLight(const dvSplatRecord& record, const float* values) const {
    const std::size_t channels = limits_.size() - 1;
    const float* limits = limits_.data();
    const float share = record.near + record.far;
    bool light = share > limits[channels];
    for (std::size_t c = 0; c < channels; ++c)
      light |= share * std::fabs(values[c]) > limits[c];
    return light;
  }
  /// The mean of |share * value| of a channel, 1 / 16 of dvGreatestTransformed at most.
  float mean(std::size_t channel) const { return limits_[channel] / dvLightRatio; }

 private:
  std::vector<float> limits_;  ///< by channel, then of the share
};

}  // namespace drevin
