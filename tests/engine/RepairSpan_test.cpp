#include <gtest/gtest.h>

#include <utility>

#include "engine/EngineFrame.h"
#include "engine/FrameScenes.h"
#include "engine/Repair.h"
#include "engine/ThreadParallel.h"

namespace drevin::test {
namespace {

TEST(RepairSpan, anyColumns_areThoseOfTheWholeRow) {
  const LiteralScene scene = stagedScene(20.0F, 3, 200, 60);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines({0, 0, 200, 60});
  ThreadParallel parallel(2);
  const dvSplatGroup& group = frame.settings().groups.front();
  const dvGroupRows rows(lines.places, 0, -frame.padding(), frame.padding(), parallel);
  const auto span = [&](int left, int right) {
    std::vector<float> colour(static_cast<std::size_t>(right - left), -1.0F);
    std::vector<float> other(colour);
    std::vector<double> coverage(colour.size(), 7.0);
    repairSpan(rows, *group.kernels, nullptr, frame.settings().slices, 30, left, right,
               {colour.data(), other.data()}, coverage.data());
    return std::make_pair(colour, coverage);
  };
  const auto whole = span(0, 200);
  for (const int left : {0, 1, 64, 130}) {
    const auto part = span(left, left + 64);
    for (std::size_t i = 0; i < 64; ++i) {
      const std::size_t at = static_cast<std::size_t>(left) + i;
      EXPECT_NEAR(part.first[i], whole.first[at], 2e-6) << at;
      EXPECT_NEAR(part.second[i], whole.second[at], 1e-6) << at;
      EXPECT_GT(part.second[i], 0.1);
    }
  }
}

}  // namespace
}  // namespace drevin::test
