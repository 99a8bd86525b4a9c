#include "DDImage/DeepOp.h"

#include "Guarded.h"
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

bool DeepOp::deepEngine(Box box, const ChannelSet& channels, DeepPlane& plane) {
  Op& behind = *op();
  if (behind.aborted()) return false;
  ChannelSet wanted(channels);
  wanted &= _deepInfo.channels();
  bool made = false;
  embedded::guarded(behind, [&] {
    DeepOutputPlane filled(wanted, box);
    made = doDeepEngine(box, wanted, filled);
    if (!made) return;
    filled.fill();
    plane = filled;
  });
  return made && !behind.aborted();
}

DeepOnlyOp::DeepOnlyOp(Node* node) : Op(node) {}
DeepOnlyOp::~DeepOnlyOp() = default;

}  // namespace Image
}  // namespace DD
