#include "terminal/NameList.h"

#include <algorithm>
#include <cstddef>

namespace drevintool {

std::string shortName(const std::string& name) {
  constexpr std::size_t kMostBytes = 60;
  return name.size() <= kMostBytes ? name : name.substr(0, kMostBytes) + "...";
}

std::string nameList(const std::vector<std::string>& names) {
  constexpr std::size_t kMostNames = 20;
  const std::size_t shown = std::min(names.size(), kMostNames);
  std::string list;
  for (std::size_t i = 0; i < shown; ++i)
    list += (i == 0 ? "" : ", ") + shortName(names[i]);
  const std::size_t left = names.size() - shown;
  return left == 0 ? list : list + " and " + std::to_string(left) + " more";
}

}  // namespace drevintool
