#pragma once

/// A number that changes over frames.

#include <vector>

namespace drevintool {

struct CurveKey {
  double frame = 0.0;
  double value = 0.0;
  bool constant = false;  ///< the value stays until the next key; else it runs there in a line
};

class ControlCurve {
 public:
  /// Keys in ascending order of their frames, no two at one frame, at least one; frames and values
  /// are finite.
  explicit ControlCurve(std::vector<CurveKey> keys);
  /// The same value at every frame.
  explicit ControlCurve(double value);

  /// The value at a frame; before the first key that of the first, after the last that of the last.
  double at(double frame) const;
  const std::vector<CurveKey>& keys() const { return keys_; }
  /// Whether it has more than one key, so that its value depends on the frame.
  bool varies() const { return keys_.size() > 1; }

 private:
  std::vector<CurveKey> keys_;
};

}  // namespace drevintool
