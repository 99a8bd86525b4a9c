#pragma once

/// The vector code of compositing: one copy for each instruction set.
///
/// All loops are over `count` columns; arrays do not overlap.

namespace drevin {

enum class dvSimdLevel;

/// How many pixels are in doubt is asked with these limits (Repair.h).
struct dvDoubtLimits {
  double error;        ///< of the colour's sum
  double weightError;  ///< of the coverage
  double absolute;     ///< allowed for each part of coverage
  double relative;     ///< allowed for each part of colour
};

struct dvCompositeCode {
  /// shares = min(1, (1 - coverage) / weight), 1 for a weight that is NaN;
  /// coverage += share * weight.
  void (*takeRoom)(const double* weights, double* coverage, double* shares, int count);
  /// colours += shares * sums.
  void (*layUnder)(const double* sums, const double* shares, float* colours, int count);
  /// colours /= coverage where that is above 0.
  void (*divide)(float* colours, const double* coverage, int count);
  /// to += from, from = 0.
  void (*move)(float* from, double* to, int count);
  /// Whether any coverage is below `least`.
  bool (*anyBelow)(const double* coverage, double least, int count);
  /// Whether for any column  error + weightError * |colour| / coverage
  ///   > absolute * coverage + relative * |colour|,  of coverages above 0.
  bool (*anyInDoubt)(const float* colours, const double* coverage, const dvDoubtLimits& limits,
                     int count);
  /// Whether any colour is not zero, but no further from it than `limit`.
  bool (*anyNearZero)(const float* colours, float limit, int count);
};

/// For the instruction set of simdLevel().
const dvCompositeCode& compositeCode();

}  // namespace drevin
