#pragma once

/// Deep operators that only record what is asked of them.

#include <vector>

#include "DDImage/DeepOp.h"
#include "EmbeddedHost/ImageInput.h"

namespace drevin::test {

/// A deep operator that is no image operator.
class DeepStandIn : public DD::Image::Op, public DD::Image::DeepOp {
 public:
  DeepStandIn(const DD::Image::Box& box, const DD::Image::ChannelSet& channels)
      : Op(nullptr), box_(box), channels_(channels) {}

  const char* Class() const override { return "DeepStandIn"; }
  const char* node_help() const override { return ""; }
  DD::Image::Op* op() override { return this; }

  int validations = 0;   ///< how often
  bool forReal = false;  ///< whether the last one was for real
  std::vector<DD::Image::RequestData> requests;

 protected:
  void _validate(bool real) override {
    ++validations;
    forReal = real;
    const DD::Image::Format format(box_.r(), box_.t());
    _deepInfo = DD::Image::DeepInfo(DD::Image::FormatPair(format), box_, channels_);
  }
  bool doDeepEngine(DD::Image::Box /*box*/, const DD::Image::ChannelSet& /*channels*/,
                    DD::Image::DeepOutputPlane& /*plane*/) override {
    return true;
  }
  void getDeepRequests(DD::Image::Box box, const DD::Image::ChannelSet& channels, int count,
                       std::vector<DD::Image::RequestData>& /*further*/) override {
    requests.emplace_back(this, box, channels, count);
  }

 private:
  DD::Image::Box box_;
  DD::Image::ChannelSet channels_;
};

/// A deep operator that is an image operator too.
class DeepImageStandIn : public embedded::ImageInput, public DD::Image::DeepOp {
 public:
  explicit DeepImageStandIn(embedded::Image image) : ImageInput(std::move(image)) {}
  DD::Image::Op* op() override { return this; }

 protected:
  void _validate(bool real) override { ImageInput::_validate(real); }
  bool doDeepEngine(DD::Image::Box /*box*/, const DD::Image::ChannelSet& /*channels*/,
                    DD::Image::DeepOutputPlane& /*plane*/) override {
    return true;
  }
  void getDeepRequests(DD::Image::Box /*box*/, const DD::Image::ChannelSet& /*channels*/,
                       int /*count*/, std::vector<DD::Image::RequestData>& /*further*/) override {}
};

}  // namespace drevin::test
