#include "DDImage/DeepOp.h"

#include "OpState.h"

namespace DD {
namespace Image {

DeepOp::DeepOp() = default;
DeepOp::~DeepOp() = default;

void DeepOp::validate(bool forReal) {
  Op* behind = op();
  if (behind->validatedAs(forReal)) return;
  behind->validate(forReal);
  // A class that is both has one _validate for both sides, which has just run.
  if (dynamic_cast<DeepOp*>(behind) != this) _validate(forReal);
}

void DeepOp::deepRequest(Box box, const ChannelSet& channels, int count) {
  box.intersect(_deepInfo.box());
  ChannelSet wanted(channels);
  wanted &= _deepInfo.channels();
  if (box.empty() || wanted.empty()) return;
  op()->hostState().recordRequest(box, wanted);
  std::vector<RequestData> requests;
  getDeepRequests(box, wanted, count, requests);
  for (const RequestData& request : requests) {
    request.deepOp->deepRequest(request.box, request.channels, request.count);
  }
}

}  // namespace Image
}  // namespace DD
