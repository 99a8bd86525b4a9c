#pragma once

/// What the rows of a deep defocus have in common, and the source rows that they are made of.

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "DDImage/DeepOp.h"
#include "DDImage/Iop.h"
#include "DDImage/Row.h"
#include "deep/DeepDefocus.h"
#include "engine/SplatLine.h"
#include "node/MatteRows.h"

namespace drevin {

/// Everything that the rows of one deep defocus read; fixed while they are made.
struct dvDeepPlan {
  DD::Image::Iop* image = nullptr;    ///< the flat picture
  DD::Image::DeepOp* deep = nullptr;  ///< null: nothing is splatted
  dvMattes mattes;
  DD::Image::ChannelSet samplesRead;  ///< of the deep samples
  DD::Image::ChannelSet flatRead;     ///< of the flat picture: what the samples lack
  dvDeepLayout layout;                ///< of samplesRead
  std::vector<dvDeepChannel> channels;
  std::vector<std::size_t> splatted;  ///< places in the layout of the channels that are splatted
  std::vector<dvDeepSettings> modes;  ///< one for each picture that is wanted
  dvDeepBlur background;
  dvSplatFrame frame;
  int formatHeight = 0;
  int left = 0;  ///< of the output columns
  int right = 0;
  std::function<bool()> aborted;
};

/// A source row, its deep pixels merged once and composited once for each mode.
class dvDeepLine {
 public:
  /// Reads row y, which is a row of the format. Any thread may do so.
  dvDeepLine(const dvDeepPlan& plan, int y);

  /// True if the samples could be read; else the row contributes nothing.
  bool hasSamples() const { return !records_.empty(); }
  /// How many pixels went through the merge.
  std::uint64_t mergedPixels() const { return mergedPixels_; }
  /// This row as seen from source row `sourceY`, for a mode of the plan.
  dvDeepSourceRow source(int sourceY, std::size_t mode) const;

 private:
  void readRecords(const dvDeepPlan& plan);
  void readFlat(const dvDeepPlan& plan);
  void addPixel(const dvDeepPlan& plan, const dvDeepSamples& samples,
                std::vector<dvDeepPiece>& pieces);

  /// Without its records. Many threads read it: a host row may make what it lacks on the first
  /// reading, so its values are looked up once.
  dvDeepSourceRow source_;
  dvColumns columns_;  ///< of the records and the flat values
  std::vector<dvDeepRecordRow> records_;
  std::uint64_t mergedPixels_ = 0;
  std::unique_ptr<DD::Image::Row> flat_;
  dvMatteRows mattes_;
};

/// The splats of source row `sourceY`, which shows the line, for a mode of the plan.
dvSplatLine splatLine(const dvDeepPlan& plan, const dvDeepLine& line, int sourceY, std::size_t mode,
                      const dvLineSettings& settings);

/// The line of a row of the format; null if it is not to be had.
using dvDeepLineAt = std::function<const dvDeepLine*(int y)>;
/// Where the values of the channel at that place go, addressed by absolute column.
using dvDeepTarget = std::function<float*(std::size_t channelPlace)>;

/// Makes output row y of a mode of the plan; false after an abort.
bool makeDeepRow(const dvDeepPlan& plan, std::size_t mode, int y, const dvDeepLineAt& lineAt,
                 const dvDeepTarget& target);

}  // namespace drevin
