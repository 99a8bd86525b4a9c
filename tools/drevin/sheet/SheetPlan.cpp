#include "sheet/SheetPlan.h"

#include <algorithm>

#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--vary " + text + ": " + reason));
}

// Pieces as they stand, blanks included: a choice's label may have some.
std::vector<std::string> split(const std::string& list, char separator) {
  std::vector<std::string> pieces(1);
  for (const char c : list) {
    if (c == separator) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

// The smallest square that holds them.
int nearlySquareColumns(std::size_t pictures) {
  std::size_t columns = 1;
  while (columns * columns < pictures)
    ++columns;
  return static_cast<int>(columns);
}

}  // namespace

VariedControl parseVaried(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0 || equals + 1 == text.size()) {
    fail(text, "give NAME=VALUE,VALUE,...");
  }
  VariedControl varied;
  varied.name = text.substr(0, equals);
  if (varied.name.find('@') != std::string::npos) {
    fail(text, "takes no keys; a sheet shows one frame, named with --frames");
  }
  const std::string list = text.substr(equals + 1);
  varied.values = split(list, list.find(';') == std::string::npos ? ',' : ';');
  return varied;
}

SheetPlan::SheetPlan(const SheetArguments& arguments) {
  for (const std::string& text : arguments.vary) {
    varied_.push_back(parseVaried(text));
    const std::string& name = varied_.back().name;
    const auto same = [&](const VariedControl& v) { return v.name == name; };
    if (std::count_if(varied_.begin(), varied_.end(), same) > 1) {
      fail(text, name + " is varied twice; give all its values in one list");
    }
    if (varied_.size() > 2) {
      fail(text, "is one too many; a sheet has columns and rows, so make a sheet for each value");
    }
    if (pictures() > kMostSheetPictures) {
      fail(name, "that makes " + std::to_string(pictures()) + " pictures; a sheet holds at most " +
                     std::to_string(kMostSheetPictures));
    }
  }
  const auto first = static_cast<int>(varied_.front().values.size());
  gridColumns_ = varied_.size() > 1
                     ? first
                     : std::min(first, arguments.columns.value_or(nearlySquareColumns(pictures())));
}

std::size_t SheetPlan::pictures() const {
  std::size_t count = 1;
  for (const VariedControl& varied : varied_)
    count *= varied.values.size();
  return count;
}

std::set<std::string> SheetPlan::names() const {
  std::set<std::string> names;
  for (const VariedControl& varied : varied_)
    names.insert(varied.name);
  return names;
}

int SheetPlan::gridRows() const {
  return (static_cast<int>(pictures()) + gridColumns_ - 1) / gridColumns_;
}

std::vector<ControlSetting> SheetPlan::settingsOf(std::size_t picture) const {
  std::vector<ControlSetting> settings;
  for (const VariedControl& varied : varied_) {
    const std::string& value = varied.values[picture % varied.values.size()];
    picture /= varied.values.size();
    settings.push_back({varied.name, value, "--vary " + varied.name + "=" + value});
  }
  return settings;
}

std::string SheetPlan::nameOf(std::size_t picture) const {
  std::string name;
  for (const ControlSetting& setting : settingsOf(picture))
    name += (name.empty() ? "" : ", ") + setting.name + "=" + setting.value;
  return name;
}

}  // namespace drevintool
