#include "host/SmoothOp.h"

#include <algorithm>

namespace smooth {

using DD::Image::ChannelMask;
using DD::Image::Knob;
using DD::Image::Knob_Callback;
using DD::Image::Op;
using DD::Image::Row;

namespace {

Op* build(Node* node) {
  return new SmoothOp(node);
}

}  // namespace

const Op::Description SmoothOp::description("HostTestSmooth", build);

SmoothOp::SmoothOp(Node* node) : Iop(node) {
  inputs(2);
}

void SmoothOp::knobs(Knob_Callback f) {
  using namespace DD::Image;
  calls.emplace_back(f.makeKnobs() ? "make" : "store");
  if (!f.makeKnobs() && onStore) onStore(*this);
  Tab_knob(f, "Smooth");
  Float_knob(f, &gain, "gain");
  SetRange(f, 0.0, 2.0);
  Tooltip(f, "Factor of the picture.");
  Float_knob(f, &offset, "offset", "Offset");
  Int_knob(f, &repeats, "repeats");
  SetRange(f, 1.0, 9.0);
  SetFlags(f, Knob::FORCE_RANGE | Knob::STARTLINE);
  Bool_knob(f, &on, "on");
  Enumeration_knob(f, &method, kMethods, "method");
  Text_knob(f, "Colours", "of the result");
  Color_knob(f, tint.data(), "tint");
  MultiFloat_knob(f, window.data(), 2, "window");
  SetRange(f, 0.0, 1000.0);
  SetFlags(f, Knob::FORCE_RANGE);
  Input_Channel_knob(f, &depth, 1, 0, "depth");
  InputOnly_Channel_knob(f, &only, 1, 1, "only");
  Input_ChannelMask_knob(f, &mask, 0, "mask");
  Text_knob(f, "the end");
}

int SmoothOp::knob_changed(Knob* knob) {
  changed.push_back(knob);
  return changedResult;
}

bool SmoothOp::test_input(int n, Op* op) const {
  return Iop::test_input(n, op);
}

Op* SmoothOp::default_input(int n) const {
  return n == 0 ? Iop::default_input(n) : nullptr;
}

void SmoothOp::set_input(int n, Op* op, int input, int offsetOfInput) {
  calls.emplace_back("set_input");
  Iop::set_input(n, op, input, offsetOfInput);
}

void SmoothOp::append(DD::Image::Hash& hash) {
  calls.emplace_back("append");
  hash.append("smooth 1");
}

void SmoothOp::_validate(bool for_real) {
  calls.emplace_back(for_real ? "validate(true)" : "validate(false)");
  copy_info();
  info_.expand(1);
  if (onValidate) onValidate(*this, for_real);
}

void SmoothOp::_request(int x, int y, int r, int t, ChannelMask channels, int count) {
  calls.emplace_back("request");
  if (onRequest) onRequest(*this);
  input0().request(x - 1, y - 1, r + 1, t + 1, channels, count);
  if (input(1) != nullptr) input1().request(channels, count);
}

void SmoothOp::_open() {
  calls.emplace_back("open");
  if (onOpen) onOpen(*this);
}

void SmoothOp::_close() {
  calls.emplace_back("close");
  if (onClose) onClose(*this);
}

void SmoothOp::engine(int y, int x, int r, ChannelMask channels, Row& row) {
  ++rows;
  if (onRow) onRow(*this, y);
  for (const DD::Image::Channel z : channels) {
    float* out = row.writable(z);
    std::fill(out + x, out + r, 0.0F);
  }
  for (int around = y - 1; around <= y + 1; ++around) {
    Row in(x - 1, r + 1);
    in.get(input0(), around, x - 1, r + 1, channels);
    for (const DD::Image::Channel z : channels) {
      const float* from = in[z];
      float* out = row.writable(z);
      for (int i = x; i < r; ++i)
        out[i] += gain * (from[i - 1] + from[i] + from[i + 1]) / 9.0F;
    }
  }
}

}  // namespace smooth
