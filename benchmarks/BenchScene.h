#pragma once

/// The picture that the benchmarks blur: every pixel at one blur, with a few bright lights.

#include <vector>

#include "defocus/ScanlineDefocus.h"
#include "kernel/HeroKernel.h"
#include "kernel/KernelBank.h"
#include "support/LiteralFrame.h"

namespace drevin::bench {

/// An RGBA picture with depth (channel 5) of `width` x `height` px, all of it `blur` px out of
/// focus in the artistic mode with 10 slices and the default aperture.
test::LiteralScene uniformScene(int width, int height, int blur);

/// What the imaging code needs to defocus rows of a scene.
class Frame {
 public:
  explicit Frame(const test::LiteralScene& scene);
  /// One output row, all columns; returns a value of it, so that nothing is optimised away.
  float row(int y) const;

  const dvChannelFloatBuffer& hero() const { return hero_; }
  const dvKernelBank& bank() const { return settingsBank_; }
  const dvDefocusSettings& settings() const { return settings_; }
  const std::vector<int>& channels() const { return channels_; }

 private:
  const float* plane(int channel, int y) const;

  const test::LiteralScene& scene_;
  std::vector<int> channels_{1, 2, 3, 4};
  dvChannelFloatBuffer hero_;
  dvKernelBank settingsBank_;
  dvDefocusSettings settings_;
};

}  // namespace drevin::bench
