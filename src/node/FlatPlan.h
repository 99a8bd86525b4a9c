#pragma once

/// What the rows of a flat defocus have in common, and the source rows that they are made of.

#include <functional>
#include <memory>
#include <vector>

#include "DDImage/Iop.h"
#include "DDImage/Row.h"
#include "defocus/ScanlineDefocus.h"
#include "engine/SplatLine.h"
#include "node/MatteRows.h"

namespace drevin {

/// Everything that the rows of one flat defocus read; fixed while they are made.
struct dvFlatPlan {
  DD::Image::Iop* image = nullptr;
  DD::Image::Channel depth = DD::Image::Chan_Z;
  DD::Image::ChannelSet channels;  ///< splatted
  std::vector<int> numbers;        ///< of `channels`
  dvMattes mattes;
  dvDefocusSettings settings;
  int firstRow = 0;  ///< rows that are read; others repeat the nearest of them
  int lastRow = 0;
  int left = 0;  ///< of the output columns
  int right = 0;
  std::function<bool()> aborted;

  int rowOf(int sourceY) const;
};

/// A row of the picture with its depth and mattes.
class dvFlatLine {
 public:
  /// Reads row y. Any thread may do so.
  dvFlatLine(const dvFlatPlan& plan, int y);

  /// This row as seen from source row `sourceY`.
  dvSourceRow source(int sourceY) const;

 private:
  dvSourceRow source_;
  std::unique_ptr<DD::Image::Row> colour_;
  std::unique_ptr<DD::Image::Row> depth_;
  dvMatteRows mattes_;
};

/// The splats of source row `sourceY`, which shows the line.
dvSplatLine splatLine(const dvFlatPlan& plan, const dvFlatLine& line, int sourceY,
                      const dvLineSettings& settings);

/// Makes output row y; `target` gives where the values of the channel at a place go, addressed by
/// absolute column. False after an abort.
bool makeFlatRow(const dvFlatPlan& plan, int y,
                 const std::function<float*(std::size_t channelPlace)>& target);

}  // namespace drevin
