#include "engine/KindOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "support/Draw.h"

namespace drevin::test {
namespace {

std::vector<std::uint16_t> stableOrder(const std::vector<dvSplatKind>& kinds) {
  std::vector<std::uint16_t> places(kinds.size());
  std::iota(places.begin(), places.end(), std::uint16_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&](std::uint16_t a, std::uint16_t b) { return kinds[a] < kinds[b]; });
  return places;
}

TEST(KindOrder, kindsOfAnyRange_areInStableOrder) {
  Draw draw(8);
  for (const int range : {1, 2, 30, 255, 256, 257, 60000}) {
    for (const int count : {0, 1, 2, 100, dvKindOrderMost}) {
      std::vector<dvSplatKind> kinds;
      kinds.reserve(static_cast<std::size_t>(count));
      for (int i = 0; i < count; ++i)
        kinds.push_back(static_cast<dvSplatKind>(7 + draw.whole(0, range - 1)));
      if (count > 1) {
        kinds.front() = static_cast<dvSplatKind>(6 + range);
        kinds.back() = 7;
      }
      std::vector<std::uint16_t> places(kinds.size());
      orderByKind(kinds.data(), count, places.data());
      EXPECT_EQ(places, stableOrder(kinds)) << range << ' ' << count;
    }
  }
}

}  // namespace
}  // namespace drevin::test
