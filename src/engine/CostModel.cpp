#include "engine/CostModel.h"

#include <cmath>

namespace drevin {

namespace {

double transformWork(int side, int planes) {
  const auto n = static_cast<double>(side);
  return planes * n * n * std::log2(n);
}

}  // namespace

double fourierAddCost(int side, int planes) {
  return 0.06 * transformWork(side, planes);
}

double fourierFinishCost(int side, int planes) {
  return 0.12 * transformWork(side, planes);
}

double directCost(int radius, int planes) {
  const double rows = 2.0 * radius + 1.0;
  // The rims of a soft disc are a tenth of its columns; those of small ones a few vectors.
  const double vectors = 1.0 + std::fmin(rows / 16.0, 3.0);
  return rows * (4.0 + 0.8 * planes * vectors);
}

}  // namespace drevin
