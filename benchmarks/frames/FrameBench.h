#pragma once

/// Times and errors of one case of the frame table.

#include <map>
#include <memory>
#include <vector>

#include "frames/FrameNode.h"
#include "frames/LiteralRows.h"
#include "frames/TablePlan.h"
#include "frames/Yardstick.h"

namespace drevin::bench {

/// Worst differences from the yardstick in the rows that are checked, in parts of the bound.
struct FrameErrors {
  double picture = 0.0;
  double rows = 0.0;  ///< of the row-by-row forms that were timed
};

class FrameBench {
 public:
  FrameBench(const FrameCase& picture, const TablePlan& plan);

  /// Renders the picture once more; its time counts.
  void timeFrame();
  /// Makes the plan's rows once more by the plain row-by-row form, on one thread.
  void timeLiteralRows();
  /// As above by the node's own row-by-row form.
  void timeNodeRows();
  /// The three in turn, as often as the plan says.
  void timeAll();

  /// Medians of the times, those of rows scaled to the whole frame and to the threads that render.
  /// Throw std::invalid_argument if nothing was timed.
  double frameSeconds() const;
  double literalSeconds() const;
  double nodeSeconds() const;

  /// Of what was made last.
  FrameErrors errors() const;
  /// What was rendered last.
  const embedded::RenderResult& result() const { return result_; }
  FrameNode& node() { return node_; }

 private:
  using Rows = std::map<int, std::vector<float>>;

  const Yardstick& yardstick() const;
  double scaled(const std::vector<double>& times) const;

  TablePlan plan_;
  FrameCase case_;
  FramePictures pictures_;
  FrameNode node_;
  mutable std::unique_ptr<Yardstick> yardstick_;  ///< made when first needed
  std::vector<int> timedRows_;
  embedded::RenderResult result_;
  Rows literalRows_;
  Rows nodeRows_;
  std::vector<double> frameTimes_;
  std::vector<double> literalTimes_;
  std::vector<double> nodeTimes_;
};

}  // namespace drevin::bench
