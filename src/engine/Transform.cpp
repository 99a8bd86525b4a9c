#include "engine/Transform.h"

#include <algorithm>

namespace drevin {

namespace {

/// Floats of `positions` positions.
std::ptrdiff_t positions(int count) {
  return static_cast<std::ptrdiff_t>(count) * dvStripStep;
}

/// A block of a real picture's vertical frequencies from the block with the negated ones, lanes
/// being columns already.
void mirrorBlock(const float* from, float* to) {
  for (int i = 0; i < dvStripLanes; ++i) {
    const float* source = from + positions(dvStripLanes - 1 - i);
    float* target = to + positions(i);
    for (int lane = 0; lane < dvStripLanes; ++lane) {
      target[lane] = source[lane];
      target[dvStripLanes + lane] = -source[dvStripLanes + lane];
    }
  }
}

/// The vertical frequencies of sixteen columns, from a plane whose rows are transformed back.
void gatherColumns(const dvFourierPlan& plan, const dvFourierPasses& passes, bool real,
                   const float* columns, float* strip) {
  const int blocks = plan.blocks();
  for (int block = 0; block < blocks; ++block) {
    if (real && !plan.isKept(block)) continue;
    passes.turn(columns + positions(block * plan.side()), strip + block * dvStripBlock);
  }
  for (int block = 0; real && block < blocks; ++block) {
    if (plan.isKept(block)) continue;
    const int partner = plan.mirroredBlocks()[static_cast<std::size_t>(block)];
    mirrorBlock(strip + partner * dvStripBlock, strip + block * dvStripBlock);
  }
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
  const int blocks = (planes.width + dvStripLanes - 1) / dvStripLanes;
  width_ = blocks * dvStripLanes;
  support_ = 0;
  turned_.reserve(static_cast<std::size_t>(positions(width_ * plan_->blocks())));
  for (int x = 0; x < planes.width; x += dvStripLanes) {
    const float* first = planes.first + x;
    const float* second = planes.second == nullptr ? nullptr : planes.second + x;
    if (!passes_->load(first, second, planes.stride, planes.width - x, planes.height,
                       line_.data())) {
      continue;
    }
    clearColumns(support_, x);
    support_ = x + dvStripLanes;
    passes_->forward(plan_->steps(), line_.data(), planes.height, strip_.data());
    for (int block = 0; block < plan_->blocks(); ++block)
      passes_->turn(strip_.data() + block * dvStripBlock,
                    turned_.data() + positions(block * width_ + x));
  }
  return support_ > 0;
}

void dvForwardTransform::clearColumns(int begin, int end) {
  for (int block = 0; block < plan_->blocks(); ++block) {
    float* row = turned_.data() + positions(block * width_);
    std::fill(row + positions(begin), row + positions(end), 0.0F);
  }
}

void dvForwardTransform::rows(int block, float* strip) const {
  const float* head = turned_.data() + positions(block * width_);
  passes_->forward(plan_->steps(), head, support_, strip);
}

void dvForwardTransform::multiplyRows(int block, const dvStripFactors& factors, bool first,
                                      float* sums) {
  const float* head = turned_.data() + positions(block * width_);
  passes_->forwardMultiply(plan_->steps(), head, support_, factors, first, strip_.data(), sums);
}

void inverseTransform(const dvFourierPlan& plan, const dvFourierPasses& passes, bool real,
                      float* frequencies, float* strip) {
  const dvFourierSteps steps = plan.steps();
  for (int block = 0; block < plan.blocks(); ++block) {
    if (!real || plan.isKept(block)) {
      passes.inverse(steps, frequencies + positions(block * plan.side()));
    }
  }
  for (int x = 0; x < plan.side(); x += dvStripLanes) {
    float* columns = frequencies + positions(x);
    gatherColumns(plan, passes, real, columns, strip);
    passes.inverse(steps, strip);
    for (int block = 0; block < plan.blocks(); ++block) {
      std::copy_n(strip + block * dvStripBlock, dvStripBlock,
                  columns + positions(block * plan.side()));
    }
  }
}

}  // namespace drevin
