#pragma once

/// What the subcommand `render` was asked to do.

#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/DeepOrder.h"
#include "arguments/NodeArguments.h"
#include "depth/FocusKey.h"
#include "depth/FocusPoint.h"
#include "picture/MemoryBudget.h"
#include "picture/OutputFormat.h"
#include "picture/Picture.h"
#include "prepare/PictureFixes.h"

namespace drevintool {

struct RenderArguments : NodeArguments {
  std::string input;     ///< empty: black, which takes a deep picture
  std::string deep;      ///< empty: none; likewise below
  std::string deepPart;  ///< empty: the first that there is; likewise for the view
  std::string view;
  embedded::DeepOrder deepOrder = embedded::DeepOrder::NearFirst;
  std::string kernel;
  std::string mattes;
  std::string report;
  std::string output;
  std::optional<FocusPoint> focus;  ///< what to focus on; none: as the controls say
  std::vector<FocusKey> focusKeys;  ///< between which it is pulled, by their frames; empty: none
  PictureFixes fixes;
  std::optional<PixelBox> region;
  std::vector<std::string> channels;  ///< empty: the default set
  unsigned threads = 0;               ///< 0: all that the process may use
  double proxy = 1.0;
  MemoryLimit maxMemory;
  OutputFormat format;
  bool quiet = false;
  bool stats = false;              ///< a line of figures for each picture
  std::vector<int> frames;         ///< in the order of rendering; empty: no sequence
  std::vector<std::string> views;  ///< empty: none
  unsigned framesInFlight = 0;     ///< rendered at a time; 0: as many as are useful
  bool skipExisting = false;       ///< leave whole outputs as they are
  bool skipBadFrames = false;      ///< go on after a frame that failed
};

}  // namespace drevintool
