#pragma once

/// Hero kernels of random values, for tests that compare ways of resampling them.

#include <random>
#include <vector>

#include "kernel/KernelImage.h"

namespace drevin::test {

/// A side x side hero with values drawn evenly from [low, high) in each of `channels`.
inline dvChannelFloatBuffer randomHero(unsigned seed, int side, const std::vector<int>& channels,
                                       float low, float high) {
  dvChannelFloatBuffer hero;
  hero.resize(side, channels);
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> value(low, high);
  for (const int channel : channels) {
    float* plane = hero.plane(channel);
    for (std::int64_t i = 0; i < hero.count; ++i) {
      plane[i] = value(generator);
    }
  }
  return hero;
}

}  // namespace drevin::test
