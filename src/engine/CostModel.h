#pragma once

/// Which radii of a tile go through the Fourier transform: what either way costs, as ratios.

namespace drevin {

/// Expected time, in nanoseconds of one processor of 2.6 GHz with the widest vectors. Only ratios
/// matter: other machines and instruction sets are slower in both ways.
///
///   transform of the P planes of one radius, and its product with the kernel, at side N:
///       a * P * N^2 * log2 N
///   transform back, and the sum into the slice:   b * P * N^2 * log2 N
///   direct splat of one pixel, all 2R + 1 rows:   (2R + 1) * (c + d * P * columns)
double fourierAddCost(int side, int planes);
double fourierFinishCost(int side, int planes);
double directCost(int radius, int planes);

}  // namespace drevin
