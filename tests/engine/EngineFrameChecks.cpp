/// The comparisons of EngineFrame.h that fail a test.

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/EngineFrame.h"
#include "support/Agreement.h"

namespace drevin::test {

namespace {

constexpr int alpha = 4;

/// The first place of a row that does not agree; the end if all do.
template <typename Expected>
int firstDifference(const float* row, const Expected* expected, int width) {
  int i = 0;
  while (i < width && agrees(row[i], static_cast<double>(expected[i])))
    ++i;
  return i;
}

}  // namespace

void expectRowsOfTheRowCode(const EngineFrame& frame, const dvFramePlanes& planes,
                            const std::vector<int>& rows) {
  const dvFrameBox& box = planes.front().box();
  for (const int y : rows) {
    const auto expected = frame.imaging().row(y, box.left, box.right);
    for (std::size_t c = 0; c < planes.size(); ++c) {
      const float* row = planes[c].row(y);
      const std::vector<float>& wanted = expected.at(frame.channels()[c]);
      const int i = firstDifference(row, wanted.data(), box.width());
      if (i < box.width()) {
        ADD_FAILURE() << row[i] << " in place of " << wanted[static_cast<std::size_t>(i)]
                      << " at column " << box.left + i << ", row " << y << ", channel "
                      << frame.channels()[c];
        return;
      }
      const std::vector<float>& covered = expected.at(alpha);
      for (std::size_t x = 0; x < covered.size(); ++x) {
        const bool exact = covered[x] != 0.0F || row[x] == 0.0F;
        ASSERT_TRUE(exact) << row[x] << " at column " << box.left + static_cast<int>(x);
      }
    }
  }
}

void expectAgreement(const dvFramePlanes& a, const dvFramePlanes& b) {
  ASSERT_EQ(a.size(), b.size());
  const dvFrameBox& first = a.front().box();
  const dvFrameBox& second = b.front().box();
  const dvFrameBox both{std::max(first.left, second.left), std::max(first.bottom, second.bottom),
                        std::min(first.right, second.right), std::min(first.top, second.top)};
  ASSERT_FALSE(both.empty());
  for (std::size_t c = 0; c < a.size(); ++c) {
    for (int y = both.bottom; y < both.top; ++y) {
      const float* rowA = a[c].row(y) + (both.left - first.left);
      const float* rowB = b[c].row(y) + (both.left - second.left);
      const int i = firstDifference(rowA, rowB, both.width());
      ASSERT_EQ(i, both.width()) << rowA[i] << " and " << rowB[i] << " at column " << both.left + i
                                 << ", row " << y << ", plane " << c;
    }
  }
}

}  // namespace drevin::test
