#pragma once

/// The option that focuses on a point of the picture.

#include <optional>
#include <string>

#include "arguments/NodeArguments.h"
#include "depth/FocusPoint.h"

namespace CLI {
class App;
}

namespace drevintool {

class FocusOption {
 public:
  /// Adds --focus-at, which fills this.
  void addTo(CLI::App& app);
  /// Nothing if it is not given. Throws ToolError (Usage) with one line for what is no point, and
  /// where the arguments set the focus too.
  std::optional<FocusPoint> checked(const CLI::App& app, const NodeArguments& arguments) const;

 private:
  std::string text_;
};

}  // namespace drevintool
