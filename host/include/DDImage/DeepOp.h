#pragma once

/// The deep side of an operator: lists of samples for each pixel.

#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/DeepInfo.h"
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

 protected:
  virtual void _validate(bool forReal) = 0;
  virtual void getDeepRequests(Box box, const ChannelSet& channels, int count,
                               std::vector<RequestData>& requests) = 0;

  DeepInfo _deepInfo;
};

}  // namespace Image
}  // namespace DD
