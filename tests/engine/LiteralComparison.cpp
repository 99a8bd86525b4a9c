#include "engine/LiteralComparison.h"

#include <algorithm>
#include <limits>

#include "support/Agreement.h"

namespace drevin::test {

namespace {

constexpr int alpha = 4;

}  // namespace

LiteralComparison::LiteralComparison(const LiteralScene& scene, const std::vector<int>& rows) {
  const LiteralFrame literal(scene);
  for (const int y : rows)
    rows_[y] = literal.row(y, 0, scene.image.formatWidth);
}

double LiteralComparison::worstDifference(const EngineFrame& frame,
                                          const dvFramePlanes& planes) const {
  double worst = 0.0;
  for (const auto& [y, row] : rows_) {
    for (std::size_t c = 0; c < planes.size(); ++c) {
      const std::vector<LiteralValue>& expected = row.at(frame.channels()[c]);
      for (std::size_t x = 0; x < expected.size(); ++x) {
        const float value = planes[c].row(y)[x];
        if (row.at(alpha)[x].value == 0.0 && value != 0.0F)
          return std::numeric_limits<double>::infinity();
        if (isComparable(expected[x]))
          worst = std::max(worst, differenceInParts(value, expected[x].value));
      }
    }
  }
  return worst;
}

double LiteralComparison::comparableShare() const {
  double values = 0.0;
  double comparable = 0.0;
  for (const auto& [y, row] : rows_) {
    for (const auto& [channel, rowValues] : row) {
      values += static_cast<double>(rowValues.size());
      comparable +=
          static_cast<double>(std::count_if(rowValues.begin(), rowValues.end(), isComparable));
    }
  }
  return comparable / values;
}

}  // namespace drevin::test
