#pragma once

/// Splats for one output row, and their sums by the formula, in double.

#include <cstddef>
#include <vector>

#include "engine/RowSums.h"

namespace drevin::test {

/// What the values of a kernel are like.
enum class KernelKind {
  Disc,          ///< those of the node: a long constant stretch between soft rims
  Random,        ///< of both signs, with zeros strewn in
  Constant,      ///< one value everywhere
  BlankEdges,    ///< first row and column zero, negative next to them, constant inside
  SeveralSteps,  ///< stretches of different constants
};

/// Kernels of the radii 0 to `largestRadius` in channel 1.
dvKernelBank kernelBank(KernelKind kind, int largestRadius, unsigned seed = 1);

/// The splats of one source row, `dy` rows below the output row.
struct SceneRow {
  int dy = 0;
  dvSplatRow splats;
};

struct RowScene {
  dvKernelBank bank;
  int channels = 1;
  int left = 0;
  int right = 0;
  std::vector<SceneRow> rows;
};

struct SceneRange {
  int channels = 4;
  int left = -7;
  int right = 90;
  int largestRadius = 12;
  int records = 40;   ///< a row
  int farthest = 14;  ///< dy from -farthest to farthest, a row each
  float brightest = 1.0F;
};

/// Splats of all radii, some with one share only, centred in and on both sides of the columns.
RowScene randomScene(KernelKind kind, const SceneRange& range, unsigned seed);

/// A sum, and how much was added irrespective of sign: what rounding errors are relative to.
struct LiteralSum {
  double value = 0.0;
  double magnitude = 0.0;
};

/// By plane, the weight last, and column.
using LiteralSums = std::vector<std::vector<LiteralSum>>;

LiteralSums literalSums(const RowScene& scene);

/// The same by the production code, at the instruction set in use.
struct RowWay {
  dvRowShape shape = dvRowShape::Quickest;
  dvRowOrder order = dvRowOrder::Quickest;
  bool knowsReach = true;
  bool ready = false;  ///< rows are made ready before
};
std::vector<std::vector<double>> rowSums(const RowScene& scene, const RowWay& way = {});

/// Largest |a - b| / magnitude; infinite where something was added to nothing, or is not finite.
double worstError(const std::vector<std::vector<double>>& sums, const LiteralSums& literal);

}  // namespace drevin::test
