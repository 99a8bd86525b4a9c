#pragma once

/// A small operator for the host's tests: a box average of radius 1, with one control of each kind.

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "DDImage/Iop.h"
#include "DDImage/Knobs.h"

namespace smooth {

inline constexpr const char* kMethods[] = {"mean", "middle", nullptr};

/// Averages the 3 x 3 pixels around each pixel of input 0, times a gain. The picture grows by one
/// pixel on each side. Hooks let a test act within a step.
class SmoothOp : public DD::Image::Iop {
 public:
  explicit SmoothOp(Node* node);

  static const DD::Image::Op::Description description;

  const char* Class() const override { return description.name; }
  const char* node_help() const override { return "Averages the pixels around each pixel."; }
  void knobs(DD::Image::Knob_Callback f) override;
  int knob_changed(DD::Image::Knob* knob) override;
  bool test_input(int n, DD::Image::Op* op) const override;
  DD::Image::Op* default_input(int n) const override;
  void set_input(int n, DD::Image::Op* op, int input = 0, int offset = 0) override;
  void append(DD::Image::Hash& hash) override;
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& row) override;

  // What the controls fill
  float gain = 1.0F;
  double offset = 0.25;
  int repeats = 2;
  bool on = true;
  int method = 0;
  std::array<float, 3> tint = {1.0F, 0.5F, 0.25F};
  std::array<float, 2> window = {0.0F, 512.0F};
  DD::Image::Channel depth = DD::Image::Chan_Z;
  DD::Image::Channel only = DD::Image::Chan_Black;
  DD::Image::ChannelSet mask = DD::Image::Mask_RGB;

  // What a test may do within the steps
  std::function<void(SmoothOp&, bool)> onValidate;
  std::function<void(SmoothOp&)> onRequest;
  std::function<void(SmoothOp&)> onOpen;
  std::function<void(SmoothOp&)> onClose;
  std::function<void(SmoothOp&, int)> onRow;
  std::function<void(SmoothOp&)> onStore;
  int changedResult = 1;

  // What happened
  std::vector<std::string> calls;  ///< steps, rows apart
  std::atomic<int> rows{0};
  std::vector<const DD::Image::Knob*> changed;

 protected:
  void _validate(bool for_real) override;
  void _request(int x, int y, int r, int t, DD::Image::ChannelMask channels, int count) override;
  void _open() override;
  void _close() override;
};

}  // namespace smooth
