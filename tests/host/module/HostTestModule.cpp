#include "DDImage/Iop.h"
#include "DDImage/Knobs.h"

namespace {

/// Scales every pixel. Lives in a library of its own.
class Scale : public DD::Image::Iop {
 public:
  explicit Scale(Node* node) : Iop(node) {}
  const char* Class() const override;
  const char* node_help() const override { return "Scales every pixel."; }
  void knobs(DD::Image::Knob_Callback f) override { DD::Image::Float_knob(f, &factor_, "factor"); }
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& row) override {
    DD::Image::Row in(x, r);
    in.get(input0(), y, x, r, channels);
    for (const DD::Image::Channel z : channels) {
      float* out = row.writable(z);
      for (int i = x; i < r; ++i)
        out[i] = factor_ * in[z][i];
    }
  }

 private:
  float factor_ = 2.0F;
};

DD::Image::Op* build(Node* node) {
  return new Scale(node);
}

const DD::Image::Op::Description description("HostTestModule", build);

const char* Scale::Class() const {
  return description.name;
}

}  // namespace
