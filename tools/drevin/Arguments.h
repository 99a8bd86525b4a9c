#pragma once

/// The command line, checked and in the command's own terms.

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "EmbeddedHost/DeepOrder.h"
#include "picture/Picture.h"

namespace drevintool {

struct RenderArguments {
  std::string input;     ///< empty: black, which takes a deep picture
  std::string deep;      ///< empty: none; likewise below
  std::string deepPart;  ///< empty: the first that there is; likewise for the view
  std::string view;
  embedded::DeepOrder deepOrder = embedded::DeepOrder::NearFirst;
  std::string kernel;
  std::string mattes;
  std::string camera;
  std::string plugin;
  std::string report;
  std::string output;
  std::vector<std::string> settings;  ///< NAME=VALUE, in order
  std::optional<PixelBox> region;
  std::vector<std::string> channels;  ///< empty: the default set
  unsigned threads = 0;               ///< 0: all that the process may use
  double proxy = 1.0;
  bool quiet = false;
};

struct ControlsArguments {
  std::string camera;
  std::string plugin;
  std::vector<std::string> settings;
  bool json = false;
};

struct DemoArguments {
  std::string directory;
};

/// A text that was asked for instead of work: help or version.
struct TextRequest {
  std::string text;
};

using Arguments = std::variant<TextRequest, RenderArguments, ControlsArguments, DemoArguments>;

/// Reads the command line. Throws ToolError (Usage) with one line that names the option and the
/// remedy.
Arguments parseArguments(int count, const char* const* texts);

}  // namespace drevintool
