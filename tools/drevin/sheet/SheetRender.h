#pragma once

/// Rendering all pictures of a sheet.

#include <nlohmann/json.hpp>

#include <memory>
#include <vector>

#include "controls/ControlChanges.h"
#include "sheet/SheetCell.h"
#include "sheet/SheetPlan.h"

namespace drevintool {

/// A picture that was rendered.
struct SheetPicture {
  SmallPicture picture;
  std::shared_ptr<const nlohmann::ordered_json> report;  ///< null unless wanted
};

/// Renders the pictures of the plan, whose controls are `changes`, in the same order, on `threads`
/// threads, several at a time if they are small. Returns none if one failed; what failed is told on
/// standard error, and `code` is its exit code then. Throws ToolError (Interrupted, Terminated).
std::vector<SheetPicture> renderSheet(const DD::Image::Op::Description& description,
                                      const SheetPlan& plan, const SheetShare& share,
                                      const std::vector<ControlChanges>& changes, unsigned threads,
                                      ExitCode& code);

/// The names of the varied controls by which no picture differs from another.
std::vector<std::string> controlsWithoutEffect(const SheetPlan& plan,
                                               const std::vector<SheetPicture>& pictures);

}  // namespace drevintool
