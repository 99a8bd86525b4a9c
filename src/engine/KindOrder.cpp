#include "engine/KindOrder.h"

#include <algorithm>

namespace drevin {

// Kinds are mostly close together: those are counted.
void orderByKind(const dvSplatKind* kinds, int count, std::uint16_t* places) {
  for (int i = 0; i < count; ++i)
    places[i] = static_cast<std::uint16_t>(i);
  if (std::is_sorted(kinds, kinds + count)) return;
  const auto [least, most] = std::minmax_element(kinds, kinds + count);
  const int range = *most - *least + 1;
  if (range > dvKindOrderMost) {
    std::stable_sort(places, places + count,
                     [&](std::uint16_t a, std::uint16_t b) { return kinds[a] < kinds[b]; });
    return;
  }
  std::uint16_t next[dvKindOrderMost + 1] = {};
  for (int i = 0; i < count; ++i)
    ++next[kinds[i] - *least + 1];
  for (int kind = 0; kind < range; ++kind)
    next[kind + 1] = static_cast<std::uint16_t>(next[kind + 1] + next[kind]);
  for (int i = 0; i < count; ++i)
    places[next[kinds[i] - *least]++] = static_cast<std::uint16_t>(i);
}

}  // namespace drevin
