#pragma once

/// The literal node: every output row straight from the description of the effect, nothing shared
/// with the production code and nothing kept for speed.

#include <map>
#include <optional>
#include <vector>

#include "support/LiteralEstimate.h"
#include "support/LiteralHero.h"
#include "support/LiteralLens.h"
#include "support/LiteralPicture.h"
#include "support/LiteralSettings.h"
#include "support/LiteralSplat.h"

namespace drevin::test {

/// What a frame is made from.
struct LiteralScene {
  LiteralSettings settings;
  LiteralPicture image;
  std::optional<LiteralPicture> kernel;
  std::optional<LiteralPicture> mattes;
  std::vector<int> channels;  ///< requested, ascending
};

/// One output value. `slack` bounds to first order what single-precision sums may stray. Not
/// settled: rounding alone decides whether a layer is hidden or anything is covered.
struct LiteralValue {
  double value = 0.0;
  double slack = 0.0;
  bool settled = true;
};

using LiteralRow = std::map<int, std::vector<LiteralValue>>;

class LiteralFrame {
 public:
  /// `scene` must outlive the frame.
  explicit LiteralFrame(const LiteralScene& scene);
  /// As above with the sizes of an estimate that was made elsewhere.
  LiteralFrame(const LiteralScene& scene, const LiteralEstimate& estimate);

  /// Columns [left, right) of row y for every requested channel.
  LiteralRow row(int y, int left, int right) const;

  const LiteralLens& lens() const { return lens_; }
  const LiteralEstimate& estimate() const { return estimate_; }
  const LiteralKernel& hero() const { return hero_; }
  const std::vector<LiteralKernel>& bank() const { return bank_; }
  const std::vector<int>& processed() const { return processed_; }
  int kernelSize() const { return kernelSize_; }
  /// The output box: the image's, grown where the settings say so.
  LiteralBox box() const;

 private:
  LiteralFrame(const LiteralScene& scene, const LiteralEstimate* estimate);
  void prepareKernels(const LiteralEstimate* estimate);
  LiteralRow passThrough(int y, int left, int right) const;
  void defocus(int y, int left, int right, LiteralRow& out) const;
  void depthView(int y, int left, int right, LiteralRow& out) const;
  void kernelView(int y, int left, int right, LiteralRow& out) const;
  void splatPixel(LiteralSource& source, int readY, LiteralSums& sums) const;
  float matte(int channel, int x, int y) const;
  bool processes(int channel) const;

  const LiteralScene& scene_;
  LiteralLens lens_;
  LiteralEstimate estimate_;
  std::vector<int> processed_;
  int kernelSize_ = 0;
  int padding_ = 0;
  LiteralKernel hero_;
  std::vector<LiteralKernel> bank_;
};

}  // namespace drevin::test
