#pragma once

/// A small operator for the host's deep tests: makes a flat picture of a deep one.

#include <atomic>

#include "DDImage/DeepOp.h"
#include "DDImage/Iop.h"

namespace deep {

/// Composites the tidy samples of the deep operator on input 0.
class FlattenOp : public DD::Image::Iop {
 public:
  explicit FlattenOp(Node* node);

  static const DD::Image::Op::Description description;

  const char* Class() const override { return description.name; }
  const char* node_help() const override { return "Makes a flat picture of a deep one."; }
  bool test_input(int n, DD::Image::Op* op) const override;
  DD::Image::Op* default_input(int n) const override;
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& row) override;

  std::atomic<int> failedReads{0};  ///< rows of which the samples could not be read

 protected:
  void _validate(bool for_real) override;
  void _request(int x, int y, int r, int t, DD::Image::ChannelMask channels, int count) override;

 private:
  DD::Image::DeepOp* deepInput() const;
};

}  // namespace deep
