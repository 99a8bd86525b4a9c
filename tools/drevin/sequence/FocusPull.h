#pragma once

/// A focus that is pulled from point to point over the frames of a sequence.

#include <map>
#include <string>
#include <vector>

#include "controls/ControlCurve.h"
#include "depth/FocusKey.h"
#include "render/FrameJob.h"
#include "sequence/FrameTask.h"
#include "sequence/SequencePlan.h"

namespace drevintool {

class FocusPull {
 public:
  /// Finds the distance at the point of each key in the picture of its frame, for each view, and
  /// prints it. The frames of keys need not be among those of the plan. Throws
  /// ToolError that names the frame.
  FocusPull(const FrameShare& share, const SequencePlan& plan, const std::vector<FocusKey>& keys);

  /// In scene units: between keys in a line, before the first and after the last as there.
  double at(const FrameTask& task) const;

 private:
  std::map<std::string, ControlCurve> curves_;  // by view
};

}  // namespace drevintool
