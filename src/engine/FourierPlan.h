#pragma once

/// What a Fourier transform of one length needs: its steps, their twiddle factors, and the order of
/// the frequencies.

#include <vector>

#include "engine/FourierPasses.h"

namespace drevin {

/// The longest supported transform.
constexpr int dvLargestTransform = 1152;

/// The smallest supported length of at least `least` points: 16 times small factors of 2, 3 and 5,
/// from 16 to dvLargestTransform. 0 if there is none.
int transformSide(int least);

/// Immutable, so any number of threads may use one.
///
///   X[k] = sum over n of  x[n] * exp(-2 pi i n k / side)
///
/// Frequencies come out with their digits reversed: in blocks of sixteen positions, of which block
/// b holds the frequencies h(b), h(b) + B, ..., h(b) + 15 B with B = side / 16 blocks.
class dvFourierPlan {
 public:
  /// `side` is a value of transformSide other than 0.
  explicit dvFourierPlan(int side);
  dvFourierPlan(const dvFourierPlan&) = delete;
  dvFourierPlan& operator=(const dvFourierPlan&) = delete;

  int side() const { return side_; }
  int blocks() const { return side_ / dvStripLanes; }
  const dvFourierSteps& steps() const { return steps_; }

  /// The frequency at a position, 0 to side - 1.
  int frequency(int position) const;
  /// By block the one with the negated frequencies: their positions are turned about, but for the
  /// first of block 0, which is its own partner.
  const std::vector<int>& mirroredBlocks() const { return mirroredBlocks_; }
  /// Whether a block is among those that suffice for real values, where F(-k) = conj F(k): one of
  /// each pair, and those that are their own partners.
  bool isKept(int block) const { return lowFrequency(block) <= blocks() / 2; }
  dvRealBlocks realBlocks() const { return {mirroredBlocks_.data(), keptBlocks_.data()}; }

 private:
  int lowFrequency(int block) const { return frequency(block * dvStripLanes); }
  int side_;
  dvFourierSteps steps_;
  std::vector<float> outerTwiddles_;
  std::vector<float> innerTwiddles_;
  std::vector<float> jointTwiddles_;
  std::vector<int> mirroredBlocks_;
  std::vector<int> keptBlocks_;  ///< by block itself where it is kept, else its partner
};

/// The plan of a length that transformSide gives. Made on first use; safe from any thread; stays
/// for the life of the process.
const dvFourierPlan& fourierPlan(int side);

/// The vector code at simdLevel().
const dvFourierPasses& fourierPasses();

}  // namespace drevin
