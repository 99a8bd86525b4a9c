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
  return planes.second == nullptr ? realColumns(planes) : pairColumns(planes);
}

bool dvForwardTransform::pairColumns(const dvPlanePair& planes) {
  float* line = line_.data();
  for (int x = 0; x < width_; x += dvStripLanes) {
    const int columns = planes.width - x;
    bool any = passes_->load(planes.first + x, planes.stride, columns, planes.height, line);
    any |= passes_->load(planes.second + x, planes.stride, columns, planes.height,
                         line + dvStripLanes);
    if (!any) continue;
    passes_->forward(plan_->steps(), line, blocksOf(planes.height), strip_.data());
    clearColumns(headBlocks_ * dvStripLanes, x);
    for (int block = 0; block < plan_->blocks(); ++block)
      passes_->turn(strip_.data() + block * dvStripBlock, turnedColumns(block, x));
    headBlocks_ = x / dvStripLanes + 1;
  }
  return headBlocks_ > 0;
}

bool dvForwardTransform::realColumns(const dvPlanePair& planes) {
  const dvRealBlocks real = plan_->realBlocks();
  float* line = line_.data();
  for (int x = 0; x < width_; x += 2 * dvStripLanes) {
    const int next = x + dvStripLanes;
    const float* nextRow = next < width_ ? planes.first + next : nullptr;
    bool any =
        passes_->load(planes.first + x, planes.stride, planes.width - x, planes.height, line);
    any |= passes_->load(nextRow, planes.stride, planes.width - next, planes.height,
                         line + dvStripLanes);
    if (!any) continue;
    passes_->forward(plan_->steps(), line, blocksOf(planes.height), strip_.data());
    clearColumns(headBlocks_ * dvStripLanes, x);
    for (int block = 0; block < plan_->blocks(); ++block) {
      if (real.kept[block] != block) continue;
      passes_->turnReal(strip_.data() + block * dvStripBlock,
                        strip_.data() + real.mirrored[block] * dvStripBlock, block == 0,
                        turnedColumns(block, x),
                        nextRow == nullptr ? nullptr : turnedColumns(block, next));
    }
    headBlocks_ = (nextRow == nullptr ? x : next) / dvStripLanes + 1;
  }
  return headBlocks_ > 0;
}

float* dvForwardTransform::turnedColumns(int block, int x) {
  return turned_.data() + positions(block * width_ + x);
}

void dvForwardTransform::clearColumns(int begin, int end) {
  for (int block = 0; begin < end && block < plan_->blocks(); ++block)
    std::fill(turnedColumns(block, begin), turnedColumns(block, end), 0.0F);
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
  const std::ptrdiff_t stride = positions(plan.side());
  for (int x = 0; x < plan.side(); x += dvStripLanes) {
    float* columns = frequencies + positions(x);
    if (!real) {
      passes.inverseColumns(steps, columns, stride, strip);
      continue;
    }
    x += dvStripLanes;
    const float* next = x < plan.side() ? frequencies + positions(x) : nullptr;
    passes.inverseRealColumns(steps, plan.realBlocks(), columns, next, stride, strip);
  }
}

}  // namespace drevin
