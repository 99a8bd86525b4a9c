#include "terminal/NameList.h"

#include <algorithm>

namespace drevintool {
namespace {

bool beginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// The byte at which that character begins; the size where there are no more.
std::size_t placeOf(std::size_t character, const std::string& text) {
  std::size_t place = 0;
  for (; place < text.size(); ++place) {
    if (!beginsCharacter(text[place])) continue;
    if (character-- == 0) break;
  }
  return place;
}

}  // namespace

std::string shortName(const std::string& name) {
  constexpr std::size_t kMostBytes = 60;
  if (name.size() <= kMostBytes) return name;
  std::size_t end = kMostBytes;
  while (end > 0 && !beginsCharacter(name[end]))
    --end;
  return name.substr(0, end) + "...";
}

std::size_t characters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

std::string columnName(const std::string& name, std::size_t most) {
  const std::size_t all = characters(name);
  if (all <= most) return name;
  const std::size_t end = (most - 3) / 2;
  const std::size_t beginning = most - 3 - end;
  return name.substr(0, placeOf(beginning, name)) + "..." + name.substr(placeOf(all - end, name));
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
