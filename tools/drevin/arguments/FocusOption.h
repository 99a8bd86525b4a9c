#pragma once

/// The option that focuses on a point of the picture.

#include <optional>
#include <string>
#include <vector>

#include "arguments/NodeArguments.h"
#include "depth/FocusKey.h"
#include "depth/FocusPoint.h"

namespace CLI {
class App;
}

namespace drevintool {

class FocusOption {
 public:
  /// Adds --focus-at, which fills this.
  void addTo(CLI::App& app);
  /// The one point for every frame; nothing if it is not given, or with keys. Throws ToolError
  /// (Usage) with one line for what is no point, and where the arguments set the focus too.
  std::optional<FocusPoint> checked(const CLI::App& app, const NodeArguments& arguments) const;
  /// Points that are keys, by their frames; none if it is not given so. Throws as parseFocusKeys.
  std::vector<FocusKey> keys() const;

 private:
  bool keyed() const;

  std::vector<std::string> texts_;
};

}  // namespace drevintool
