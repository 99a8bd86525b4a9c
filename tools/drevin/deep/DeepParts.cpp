#include "deep/DeepParts.h"

#include <algorithm>

#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

std::string deepPartList(const ExrFacts& facts) {
  constexpr std::size_t kLongest = 2000;
  std::string list;
  for (std::size_t number = 0; number < facts.parts.size(); ++number) {
    const ExrPartFacts& part = facts.parts[number];
    if (!part.deep) continue;
    if (list.size() > kLongest) return list + ", ...";
    list += list.empty() ? "" : ", ";
    list += part.name.empty() ? "part " + std::to_string(number) + " without a name" : part.name;
    if (!part.view.empty()) list += " (view " + part.view + ")";
  }
  return list;
}

}  // namespace

std::size_t chooseDeepPart(const ExrFacts& facts, const std::string& path, const std::string& name,
                           const std::string& view) {
  const auto fail = [&path](const std::string& reason) {
    throw ToolError(ExitCode::InputUnreadable, oneLine(path + ": " + reason));
  };
  const auto deep = [](const ExrPartFacts& part) { return part.deep; };
  if (std::none_of(facts.parts.begin(), facts.parts.end(), deep)) {
    fail("holds no deep image; give a flat picture with --input");
  }
  const auto meant = [&](const ExrPartFacts& part) {
    return part.deep && (name.empty() || part.name == name) && (view.empty() || part.view == view);
  };
  const auto found = std::find_if(facts.parts.begin(), facts.parts.end(), meant);
  if (found == facts.parts.end()) {
    fail("has no deep part" + (name.empty() ? "" : " " + name) +
         (view.empty() ? "" : " of view " + view) + "; its deep parts are " + deepPartList(facts));
  }
  return static_cast<std::size_t>(found - facts.parts.begin());
}

}  // namespace drevintool
