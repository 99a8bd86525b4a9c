#pragma once

/// The image operator: an operator that makes rows of pixels.

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Format.h"
#include "DDImage/IopInfo.h"
#include "DDImage/Op.h"
#include "DDImage/Row.h"

namespace DD {
namespace Image {

/// Holder of the information on a picture; settled once the operator is validated for real.
class DD_EXPORT IopInfoOwner {
 public:
  using Info = IopInfo;

  const Info& info() const { return info_; }
  int x() const { return info_.x(); }
  int y() const { return info_.y(); }
  int r() const { return info_.r(); }
  int t() const { return info_.t(); }
  int w() const { return info_.w(); }
  int h() const { return info_.h(); }
  int clampx(int x) const { return info_.clampx(x); }
  int clampy(int y) const { return info_.clampy(y); }
  const Format& format() const { return info_.format(); }
  const Format& full_size_format() const { return info_.full_size_format(); }
  ChannelMask channels() const { return info_.channels(); }
  bool black_outside() const { return info_.black_outside(); }

 protected:
  Info info_;
};

class DD_EXPORT Iop : public Op, public IopInfoOwner {
 public:
  /// One input, until inputs() says otherwise.
  explicit Iop(Node* node);
  ~Iop() override;

  /// Writes columns x to r - 1 of row y for `channels`. Called by many threads at once, for rows of
  /// the box in any order, possibly more than once.
  virtual void engine(int y, int x, int r, ChannelMask channels, Row& row) = 0;

  /// Input `n` as an image operator, or null.
  Iop* input(int n) const;
  Iop& input0() const { return *input(0); }
  Iop& input1() const { return *input(1); }
  /// Takes image operators only.
  bool test_input(int n, Op* op) const override;
  /// A black picture of 1920 x 1080 pixels.
  Op* default_input(int n) const override;
  /// Extends the channels wanted of this operator to those needed of input `n`.
  virtual void in_channels(int n, ChannelSet& channels) const;

  /// Announces that a region will be read, `count` times. Clipped to the box and the channels of
  /// this operator; nothing happens if nothing is left.
  void request(int x, int y, int r, int t, ChannelMask channels, int count);
  void request(const Box& box, ChannelMask channels, int count);
  void request(ChannelMask channels, int count);

  /// As Row::get.
  void get(int y, int x, int r, ChannelMask channels, Row& row) {
    row.get(*this, y, x, r, channels);
  }
  /// One pixel, by the same rules as Row::get.
  float at(int x, int y, Channel z);

  Iop* iop() override { return this; }
  const Iop* iop() const override { return this; }

 protected:
  void _validate(bool for_real) override;
  virtual void _request(int x, int y, int r, int t, ChannelMask channels, int count);
  void _open() override;
  void _close() override;

  /// Validates input `n` and takes over its information.
  void copy_info(int n = 0);

  // embedded host
  /// Row y of a channel where it lies in memory for the whole box, biased so that index x is column
  /// x; null if rows have to be made. y is inside the box.
  virtual const float* directRow(int y, Channel z) const;

 private:
  friend class Row;
};

}  // namespace Image
}  // namespace DD
