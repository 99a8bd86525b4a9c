#pragma once

/// The deep side of an operator: lists of samples for each pixel.

#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/DeepInfo.h"
#include "DDImage/DeepPlane.h"
#include "DDImage/Op.h"

namespace DD {
namespace Image {

class DeepOp;

/// What a deep operator asks of an input in turn.
class DD_EXPORT RequestData {
 public:
  RequestData(DeepOp* op, const Box& region, const ChannelSet& wanted, int reads)
      : deepOp(op), box(region), channels(wanted), count(reads) {}

  DeepOp* deepOp;
  Box box;
  ChannelSet channels;
  int count;
};

/// An interface beside Op, not derived from it: a concrete class is both.
class DD_EXPORT DeepOp {
 public:
  DeepOp();
  virtual ~DeepOp();
  DeepOp(const DeepOp&) = delete;
  DeepOp& operator=(const DeepOp&) = delete;

  /// The operator that this is the deep side of.
  virtual Op* op() = 0;
  const DeepInfo& deepInfo() const { return _deepInfo; }
  /// As validate of the operator behind it.
  void validate(bool forReal);
  /// Announces that a region will be read. Clipped to the box and the channels of deepInfo().
  void deepRequest(Box box, const ChannelSet& channels, int count = 1);
  /// Reads the samples of a box, with those of `channels` that the operator has. False after an
  /// error or an abort: the plane is then not to be used. Safe from any thread.
  bool deepEngine(Box box, const ChannelSet& channels, DeepPlane& plane);
  /// As above for columns x to r - 1 of row y.
  bool deepEngine(int y, int x, int r, const ChannelSet& channels, DeepPlane& plane) {
    return deepEngine(Box(x, y, r, y + 1), channels, plane);
  }

 protected:
  virtual void _validate(bool forReal) = 0;
  /// Called by many threads at once.
  virtual bool doDeepEngine(Box box, const ChannelSet& channels, DeepOutputPlane& plane) = 0;
  virtual void getDeepRequests(Box box, const ChannelSet& channels, int count,
                               std::vector<RequestData>& requests) = 0;

  DeepInfo _deepInfo;
};

/// An operator that is deep and nothing else.
class DD_EXPORT DeepOnlyOp : public Op, public DeepOp {
 public:
  explicit DeepOnlyOp(Node* node);
  ~DeepOnlyOp() override;
  Op* op() override { return this; }

 protected:
  void _validate(bool forReal) override = 0;
};

}  // namespace Image
}  // namespace DD
