#include "deep/DeepParts.h"

#include <algorithm>
#include <vector>

#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
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

// At a name of the deep parts if it is that which there is not, else at one of their views.
std::string hintFor(const ExrFacts& facts, const std::string& name, const std::string& view) {
  std::vector<std::string> names;
  std::vector<std::string> views;
  for (const ExrPartFacts& part : facts.parts) {
    if (!part.deep) continue;
    names.push_back(part.name);
    views.push_back(part.view);
  }
  const bool known = std::find(names.begin(), names.end(), name) != names.end();
  return name.empty() || known ? nearestHint(view, views) : nearestHint(name, names);
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
         (view.empty() ? "" : " of view " + view) + hintFor(facts, name, view) +
         "; its deep parts are " + deepPartList(facts));
  }
  return static_cast<std::size_t>(found - facts.parts.begin());
}

}  // namespace drevintool
