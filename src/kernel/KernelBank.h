#pragma once

/// The bank of blur kernels: every odd size up to the frame's largest blur.

#include <vector>

#include "kernel/KernelImage.h"

namespace drevin {

/// Kernels by index; entry i has the side kernelSide(i).
using dvKernelBank = std::vector<dvChannelFloatBuffer>;

/// Side of a bank entry, px: the index where it is odd, one less where it is even, at least 1. Odd,
/// so that the centre is a whole pixel.
int kernelSide(int index);

/// Entries of the bank for a largest blur of `kernelSize` px: kernelSize + 5, so that a kernel and
/// its next larger neighbour are there for every blur. Never negative; stops at the largest int.
int bankSize(int kernelSize);

/// Fills plane `channel` of `kernel`, which is already size x size, by resampling that plane of the
/// hero kernel.
///
///   output (c, r) = hero at ((c + 0.5) * W / size, (r + 0.5) * H / size)
///
/// by the Catmull-Rom cubic, first down the columns, then across; the neighbourhood repeats the
/// hero's edge pixels and the result is not limited. Where the base pixel has index 0 in either
/// axis the output is 0, so a kernel enlarged, or reduced by less than 2, begins with rows and
/// columns of zeros (one each at scales from 2/3 to 2); the asymmetry is intended.
///
/// The base index is truncated from a product in double, the fraction is formed in float.
/// A size below 1, or a plane that is missing on either side, changes nothing.
/// Tests: KernelBank_test.cpp
void buildKernel(dvChannelFloatBuffer& kernel, int size, const dvChannelFloatBuffer& hero,
                 int channel);

/// Builds bank entry `index` for `channels` (ascending): resampled, then every channel with a
/// positive sum scaled by 1 / (largest channel sum). Sums are formed in double, rounded to float.
///
/// The strongest channel then sums to 1 and the others keep their ratio to it: a coloured aperture
/// stays coloured. A channel whose sum is 0, negative or NaN is left as it is; without a positive
/// sum nothing is scaled. Safe for different entries at the same time.
void initializeBankEntry(dvChannelFloatBuffer& entry, int index, const dvChannelFloatBuffer& hero,
                         const std::vector<int>& channels);

}  // namespace drevin
