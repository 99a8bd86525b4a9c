#pragma once

/// Which pictures a sheet has, and where.

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "arguments/SheetArguments.h"
#include "controls/ControlText.h"

namespace drevintool {

/// Most pictures of a sheet.
constexpr std::size_t kMostSheetPictures = 1000;

/// A control and the values that are shown of it.
struct VariedControl {
  std::string name;
  std::vector<std::string> values;
};

/// "NAME=VALUE,VALUE,..."; with a ';' in it the values are between those, and may have commas.
/// Throws ToolError (Usage) for a text without name or values, and for a key (NAME@FRAME).
VariedControl parseVaried(const std::string& text);

class SheetPlan {
 public:
  /// Throws ToolError (Usage) for what parseVaried refuses, for more than two varied controls, for
  /// one that is varied twice, and for more than kMostSheetPictures pictures.
  explicit SheetPlan(const SheetArguments& arguments);

  const std::vector<VariedControl>& varied() const { return varied_; }
  std::set<std::string> names() const;
  std::size_t pictures() const;
  /// Of the grid: with two controls the values of the first by those of the second; else as asked
  /// for, or nearly square, the last row perhaps not full.
  int gridColumns() const { return gridColumns_; }
  int gridRows() const;

  /// The settings of a picture, counted row by row from the top left, in the order of varied().
  std::vector<ControlSetting> settingsOf(std::size_t picture) const;
  /// "focalPlane=4, fStop=2.8".
  std::string nameOf(std::size_t picture) const;

 private:
  std::vector<VariedControl> varied_;
  int gridColumns_ = 1;
};

}  // namespace drevintool
