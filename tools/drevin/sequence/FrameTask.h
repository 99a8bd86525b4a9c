#pragma once

/// One picture of a sequence.

#include <optional>
#include <string>

namespace drevintool {

struct FrameTask {
  std::optional<int> frame;  ///< nothing where no frames were asked for
  std::string view;          ///< empty where no views were asked for

  /// "frame 12", "frame 12 left" or "view left"; empty for a picture that is no part of a sequence.
  std::string name() const {
    if (!frame) return view.empty() ? "" : "view " + view;
    return "frame " + std::to_string(*frame) + (view.empty() ? "" : " " + view);
  }
};

}  // namespace drevintool
