#pragma once

/// The published rules for tidy deep pixels, written out piece by piece.

#include <random>
#include <vector>

namespace deep {

/// A sample with two premultiplied colours. A point has its back at its front.
struct LiteralSample {
  float front;
  float back;
  float alpha;
  float red;
  float green;
};

/// What the rules give, in extended precision.
struct LiteralPiece {
  long double front;
  long double back;
  long double alpha;
  long double red;
  long double green;
};

/// The tidy pixel of samples with finite depths, backs at or behind their fronts, and alphas from 0
/// to 1; nearest first. Points at one depth are composited in the order given.
std::vector<LiteralPiece> literalTidy(const std::vector<LiteralSample>& samples);

/// A pixel of up to `most` points and volumes: some on a coarse grid, so that depths coincide, some
/// 1e-6 thin; some alphas 0, 1, almost 0 or almost 1; some colours beyond 1 or negative.
std::vector<LiteralSample> randomSamples(std::mt19937& random, int most);

}  // namespace deep
