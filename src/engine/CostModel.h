#pragma once

/// What it takes to convolve a tile by Fourier transform, for choosing between that and rows.

namespace drevin {

/// Expected time, in nanoseconds of one processor of about 3.5 GHz, at the instruction set of
/// simdLevel(), fitted to measurements (benchmarks/Transform_bench.cpp). Only ratios to dvRowCost
/// matter.
///
///   transform of the P planes of one kernel, of tiles of side S at length N, and its product with
///   the kernel:   a * P * (S + N) * N * log2 N
///   transform back, and the sum into the slice:   b * P * N^2 * log2 N
double fourierAddCost(int side, int length, int planes);
double fourierFinishCost(int length, int planes);

}  // namespace drevin
