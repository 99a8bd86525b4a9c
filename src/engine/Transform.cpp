#include "engine/Transform.h"

#include <algorithm>

namespace drevin {

namespace {

/// Floats of `positions` positions.
std::ptrdiff_t positions(int count) {
  return static_cast<std::ptrdiff_t>(count) * dvStripStep;
}

int blocksOf(int lanes) {
  return (lanes + dvStripLanes - 1) / dvStripLanes;
}

}  // namespace

void dvForwardTransform::begin(int side) {
  plan_ = &fourierPlan(side);
  passes_ = &fourierPasses();
  const auto strip = static_cast<std::size_t>(positions(side));
  line_.reserve(strip);
  strip_.reserve(strip);
}

bool dvForwardTransform::columns(const dvPlanePair& planes) {
  width_ = blocksOf(planes.width) * dvStripLanes;
  headBlocks_ = 0;
  turned_.reserve(static_cast<std::size_t>(positions(width_ * plan_->blocks())));
  for (int x = 0; x < planes.width; x += dvStripLanes) {
    const float* first = planes.first + x;
    const float* second = planes.second == nullptr ? nullptr : planes.second + x;
    if (passes_->load(first, second, planes.stride, planes.width - x, planes.height,
                      line_.data())) {
      passes_->forward(plan_->steps(), line_.data(), blocksOf(planes.height), strip_.data());
      turnColumns(x);
    }
  }
  return headBlocks_ > 0;
}

/// Takes the transform of the columns from x on, and zeros for those left out before.
void dvForwardTransform::turnColumns(int x) {
  const int end = headBlocks_ * dvStripLanes;
  for (int block = 0; block < plan_->blocks(); ++block) {
    float* row = turned_.data() + positions(block * width_);
    std::fill(row + positions(end), row + positions(x), 0.0F);
    passes_->turn(strip_.data() + block * dvStripBlock, row + positions(x));
  }
  headBlocks_ = x / dvStripLanes + 1;
}

void dvForwardTransform::rows(int block, float* strip) const {
  const float* head = turned_.data() + positions(block * width_);
  passes_->forward(plan_->steps(), head, headBlocks_, strip);
}

void dvForwardTransform::multiplyRows(int block, const dvStripFactors& factors, bool first,
                                      float* sums) {
  const float* head = turned_.data() + positions(block * width_);
  passes_->forwardMultiply(plan_->steps(), head, headBlocks_, factors, first, strip_.data(), sums);
}

void inverseTransform(const dvFourierPlan& plan, const dvFourierPasses& passes, bool real,
                      float* frequencies, float* strip) {
  const dvFourierSteps& steps = plan.steps();
  for (int block = 0; block < plan.blocks(); ++block) {
    if (!real || plan.isKept(block)) {
      passes.inverse(steps, frequencies + positions(block * plan.side()));
    }
  }
  const int* kept = real ? plan.keptBlocks().data() : nullptr;
  for (int x = 0; x < plan.side(); x += dvStripLanes)
    passes.inverseColumns(steps, kept, frequencies + positions(x), positions(plan.side()), strip);
}

}  // namespace drevin
