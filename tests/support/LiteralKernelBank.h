#pragma once

/// A plain kernel bank, pixel by pixel with sixteen reads each: the yardstick of the fast build.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "kernel/KernelImage.h"

namespace drevin::test {

/// The cubic in the arithmetic of `Real`.
template <typename Real>
Real literalCubic(Real p0, Real p1, Real p2, Real p3, Real t) {
  const Real third = Real(3) * (p1 - p2) + p3 - p0;
  const Real second = Real(2) * p0 - Real(5) * p1 + Real(4) * p2 - p3;
  return p1 + Real(0.5) * t * ((p2 - p0) + t * (second + t * third));
}

/// One output pixel: `width` x `height` hero pixels resampled to size x size. Places are formed as
/// the bank forms them (base in double, fraction in float); the interpolation is in `Real`.
template <typename Real>
Real literalResample(const float* plane, int width, int height, int size, int column, int row) {
  const float ax = static_cast<float>(width) / static_cast<float>(size);
  const float ay = static_cast<float>(height) / static_cast<float>(size);
  const int ix = static_cast<int>((column + 0.5) * static_cast<double>(ax));
  const int iy = static_cast<int>((row + 0.5) * static_cast<double>(ay));
  if (ix < 1 || ix >= width || iy < 1 || iy >= height) {
    return Real(0);
  }
  const float fx = (static_cast<float>(column) + 0.5F) * ax - static_cast<float>(ix);
  const float fy = (static_cast<float>(row) + 0.5F) * ay - static_cast<float>(iy);
  Real across[4];
  for (int i = 0; i < 4; ++i) {
    Real down[4];
    for (int j = 0; j < 4; ++j) {
      const int x = std::clamp(ix - 1 + i, 0, width - 1);
      const int y = std::clamp(iy - 1 + j, 0, height - 1);
      down[j] = static_cast<Real>(plane[static_cast<std::ptrdiff_t>(y) * width + x]);
    }
    across[i] = literalCubic<Real>(down[0], down[1], down[2], down[3], static_cast<Real>(fy));
  }
  return literalCubic<Real>(across[0], across[1], across[2], across[3], static_cast<Real>(fx));
}

/// The planes of one bank entry of the given side, in the order of `channels`.
template <typename Real>
std::vector<std::vector<Real>> literalBankEntry(int side, const dvChannelFloatBuffer& hero,
                                                const std::vector<int>& channels) {
  std::vector<std::vector<Real>> planes;
  std::vector<Real> sums;
  Real largest = 0;
  for (const int channel : channels) {
    planes.emplace_back();
    double exact = 0.0;  // sums are formed in double whatever the pixels' arithmetic
    for (int i = 0; i < side * side; ++i) {
      planes.back().push_back(literalResample<Real>(hero.plane(channel), hero.width, hero.height,
                                                    side, i % side, i / side));
      exact += static_cast<double>(planes.back().back());
    }
    const Real sum = static_cast<Real>(exact);
    sums.push_back(sum);
    largest = std::max(largest, sum);
  }
  for (std::size_t c = 0; c < planes.size(); ++c) {
    if (largest > 0 && sums[c] > 0) {
      for (Real& value : planes[c]) {
        value *= Real(1) / largest;
      }
    }
  }
  return planes;
}

}  // namespace drevin::test
