#pragma once

/// The literal frame of a case, in double: what its pictures are held to.

#include "frames/FramePictures.h"
#include "support/LiteralDeepFrame.h"

namespace drevin::bench {

class Yardstick {
 public:
  Yardstick(const FrameCase& picture, const FramePictures& pictures);

  /// RGBA of row y. May be called by many threads.
  test::LiteralRow row(int y) const;

  const test::LiteralScene& scene() const { return scene_; }
  const test::LiteralFrame& frame() const { return *frame_; }

 private:
  test::LiteralDeepImage deepRows(int bottom, int top) const;

  test::LiteralScene scene_;
  std::shared_ptr<const DeepGrid> deep_;
  std::unique_ptr<test::LiteralFrame> frame_;
};

/// Whatever row y of RGBA, one plane after the other, strays from the yardstick's where that is
/// well-conditioned: the largest difference in parts of the bound 1e-5 + 1e-4 |b|. An infinity or a
/// NaN that the yardstick has not is infinitely far.
double rowError(const std::vector<float>& row, const test::LiteralRow& literal);

/// Row y of RGBA of a picture, one plane after the other.
std::vector<float> pictureRow(const embedded::Image& picture, int y);

}  // namespace drevin::bench
