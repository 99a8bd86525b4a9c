#include "terminal/NearestName.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace drevintool {
namespace {

// Costs are doubled, so that a difference of letter case can count half an edit.
constexpr std::size_t kEdit = 2;
constexpr std::size_t kCase = 1;

std::size_t replaceCost(char a, char b) {
  if (a == b) return 0;
  const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  return lower(a) == lower(b) ? kCase : kEdit;
}

// Edit distance with swaps of neighbours (optimal string alignment), three rows at a time.
std::size_t editCost(const std::string& a, const std::string& b) {
  std::vector<std::size_t> older(b.size() + 1);
  std::vector<std::size_t> previous(b.size() + 1);
  std::vector<std::size_t> current(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j)
    previous[j] = kEdit * j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = kEdit * i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      current[j] = std::min({previous[j] + kEdit, current[j - 1] + kEdit,
                             previous[j - 1] + replaceCost(a[i - 1], b[j - 1])});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) current[j] = std::min(current[j], older[j - 2] + kEdit);
    }
    std::swap(older, previous);
    std::swap(previous, current);
  }
  return previous[b.size()];
}

}  // namespace

std::string nearestName(const std::string& name, const std::vector<std::string>& names) {
  std::string nearest;
  std::size_t least = 0;
  for (const std::string& candidate : names) {
    const std::size_t cost = editCost(name, candidate);
    const bool near = cost <= std::max(name.size(), candidate.size()) * kEdit / 2;
    if (!near || (!nearest.empty() && cost >= least)) continue;
    nearest = candidate;
    least = cost;
  }
  return nearest;
}

std::string nearestHint(const std::string& name, const std::vector<std::string>& names) {
  const std::string nearest = nearestName(name, names);
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

std::string nearestHintAndList(const std::string& name, const std::vector<std::string>& names,
                               const std::string& list) {
  const std::string hint = nearestHint(name, names);
  return hint.empty() ? "; it has " + list : hint + " It has " + list;
}

}  // namespace drevintool
