#pragma once

/// A scene rendered by the imaging code alone, with no host in between.

#include <map>
#include <vector>

#include "defocus/ScanlineDefocus.h"
#include "kernel/HeroKernel.h"
#include "kernel/KernelBank.h"
#include "kernel/PaddingEstimate.h"
#include "support/LiteralFrame.h"

namespace drevin::test {

/// The lens of a scene's settings, with every derived value.
dvLens lensOf(const LiteralSettings& settings, int formatWidth, int formatHeight, int kernelSize);

/// A source row with the values that it points to.
struct ImagingRow {
  dvSourceRow row;
  std::vector<std::vector<float>> values;
};

class ImagingFrame {
 public:
  /// `scene` must outlive the frame.
  explicit ImagingFrame(const LiteralScene& scene);

  /// Columns [left, right) of row y for every requested channel.
  std::map<int, std::vector<float>> row(int y, int left, int right) const;

  /// Columns of source row `sy`, which outside the picture shows the nearest row.
  ImagingRow sourceRow(int sy, const dvColumns& columns) const;

  /// Requested and processed channels.
  const std::vector<int>& splatted() const { return splatted_; }
  const dvPaddingResult& estimate() const { return estimate_; }
  const dvKernelBank& bank() const { return bank_; }
  const dvDefocusSettings& settings() const { return settings_; }

 private:
  using Planes = std::map<int, std::vector<float>>;

  void prepareKernels(const std::vector<int>& processed);
  void defocus(int y, int left, int right, Planes& out) const;
  std::vector<float> read(const LiteralPicture& picture, int y, const dvColumns& columns,
                          int channel) const;
  void depthView(int y, int left, int right, Planes& out) const;

  const LiteralScene& scene_;
  std::vector<int> splatted_;
  dvChannelFloatBuffer hero_;
  dvPaddingResult estimate_;
  dvKernelBank bank_;
  dvDefocusSettings settings_;
};

}  // namespace drevin::test
