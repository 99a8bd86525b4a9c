#pragma once

/// The frame's largest blur, found by scanning its depth: it sizes the bank and the padding.

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace drevin {

/// What an estimate comes to.
struct dvPaddingResult {
  int kernelSize = 0;     ///< px, the largest blur diameter in use, never above the maximum
  int padding = 0;        ///< px, how far a blur reaches: kernelSize / 2 + 2
  int largest = 0;        ///< px, the largest diameter found
  bool exceeded = false;  ///< the largest diameter found is above the maximum
};

/// The result for a largest diameter found, given the maximum kernel size.
dvPaddingResult paddingResult(int largest, int maxKernelSize);

/// How far the maximum kernel reaches, before any depth is known: (k - k mod 2 + 1) / 2.
int validationPadding(int maxKernelSize);

/// Scans depth for the largest blur.
///
///   m = max(0, ceil(blur(normalise(d)) * finalScale))  over all d that are not infinitely far
///
///   Normalise   float(float): raw sample to depth in scene units; the largest float stands for
///               infinitely far
///   Blur        float(float): such a depth to the blur diameter, px, with whatever clamp the lens
///               has; what it gives for the infinitely far, before that clamp, does not count
///   finalScale  scale of every blur, the interface's proxy scale
///
/// Fails to: a NaN blur raises nothing; 2^31 px or more count as the largest int.
/// Order does not matter: many depths of a row are scanned at once where the functions have no
/// branches.   Tests: PaddingEstimate_test.cpp
template <typename Normalise, typename Blur>
class dvPaddingEstimate {
 public:
  dvPaddingEstimate(Normalise normalise, Blur blur, float finalScale)
      : normalise_(std::move(normalise)), blur_(std::move(blur)), finalScale_(finalScale) {}

  /// Scans `count` raw depths; none for a count below 1.
  void addRow(const float* depth, int count) {
    // Copies: that the functions' values do not change in the loop is then plain to the compiler.
    const Normalise normalise = normalise_;
    const Blur blur = blur_;
    const float scale = finalScale_;
    float largest[lanes];
    std::fill(largest, largest + lanes, 0.0F);
    for (; count >= lanes; count -= lanes, depth += lanes) {
      for (int lane = 0; lane < lanes; ++lane)
        largest[lane] = larger(largest[lane], diameter(normalise(depth[lane]), blur, scale));
    }
    for (int i = 0; i < count; ++i)
      largest[i] = larger(largest[i], diameter(normalise(depth[i]), blur, scale));
    for (const float ofLane : largest)
      largest_ = larger(largest_, ofLane);
  }

  /// Adds what another estimate of the same lens has found.
  void add(const dvPaddingEstimate& other) { largest_ = larger(largest_, other.largest_); }

  /// The largest diameter so far, px, rounded up.
  int largest() const {
    const float up = std::ceil(largest_);
    return up < 0x1p31F ? static_cast<int>(up) : std::numeric_limits<int>::max();
  }

 private:
  /// Depths of a row that are scanned at once.
  static constexpr int lanes = 16;

  /// 0 for the infinitely far.
  static float diameter(float depth, const Blur& blur, float scale) {
    constexpr float infinitelyFar = std::numeric_limits<float>::max();
    const float scaled = blur(depth) * scale;
    return std::fabs(depth - infinitelyFar) < 1e-5F ? 0.0F : scaled;
  }
  /// A NaN is never the larger one.
  static float larger(float largest, float other) { return other > largest ? other : largest; }

  Normalise normalise_;
  Blur blur_;
  float finalScale_;
  float largest_ = 0.0F;  // ceil is monotone, so one rounding at the end gives the same maximum
};

}  // namespace drevin
