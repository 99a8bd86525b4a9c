#include "engine/NonZeroReach.h"

#include <algorithm>

#include "engine/DirectSums.h"

namespace drevin {

dvNonZeroReach::dvNonZeroReach(const dvGroupRows& rows, const dvKernelTable& kernels,
                               std::size_t channels, dvParallel& parallel)
    : rows_(rows), kernels_(kernels), channels_(channels), runs_(rows.size()) {
  parallel.forEach(static_cast<int>(rows.size()), [&](int /*worker*/, int item) {
    const auto row = static_cast<std::size_t>(item);
    std::vector<Runs>& planes = runs_[row];
    planes.resize(channels_ + 1);
    addRecords(rows_[row].splats->row, planes);
    addOthers(*rows_[row].splats, planes);
    for (Runs& runs : planes)
      takeTogether(runs);
  });
}

void dvNonZeroReach::append(const Run& next, Runs& runs) {
  if (!runs.empty()) {
    Run& last = runs.back();
    const bool alike =
        last.radius == next.radius && last.isPair == next.isPair && last.isSquare == next.isSquare;
    if (alike && next.begin >= last.begin && next.begin <= last.end) {
      last.end = std::max(last.end, next.end);
      return;
    }
  }
  runs.push_back(next);
}

void dvNonZeroReach::addRecords(const dvSplatRow& splats, std::vector<Runs>& planes) const {
  const std::size_t stride = splats.stride();
  const float* values = splats.values.data();
  for (const dvSplatRecord& record : splats.records) {
    const std::int64_t x = record.x;
    const Run run{x, x + 1, record.radius, record.far > 0.0F, false};
    for (std::size_t c = 0; c < channels_; ++c)
      if (values[c] != 0.0F) append(run, planes[c]);
    append(run, planes[channels_]);
    values += stride;
  }
}

void dvNonZeroReach::addOthers(const dvCentredSplats& splats, std::vector<Runs>& planes) {
  const auto square = [](std::int64_t x, int count, const std::int32_t(&radius)[2]) {
    return Run{x, x + count, std::max(radius[0], radius[1]), false, true};
  };
  for (Runs& runs : planes) {
    for (const dvSpecialSplat& splat : splats.specials)
      append(square(splat.x, 1, splat.radius), runs);
    for (const dvNotFiniteRun& run : splats.notFinite)
      append(square(run.x, run.count, run.radius), runs);
  }
}

void dvNonZeroReach::takeTogether(Runs& runs) {
  if (runs.size() <= dvMostReachRuns) return;
  std::int64_t first = runs.front().begin;
  std::int64_t last = first;
  for (const Run& run : runs) {
    first = std::min(first, run.begin);
    last = std::max(last, run.begin);
  }
  const auto cells = static_cast<std::int64_t>(dvMostReachRuns);
  Runs together(dvMostReachRuns, {0, 0, -1, false, true});
  for (const Run& run : runs) {
    const std::int64_t place = (run.begin - first) * cells / (last - first + 1);
    Run& cell = together[static_cast<std::size_t>(place)];
    const bool isFirst = cell.radius < 0;
    cell.begin = isFirst ? run.begin : std::min(cell.begin, run.begin);
    cell.end = isFirst ? run.end : std::max(cell.end, run.end);
    cell.radius = std::max(cell.radius, run.radius + (run.isPair ? 1 : 0));
  }
  together.erase(std::remove_if(together.begin(), together.end(),
                                [](const Run& run) { return run.radius < 0; }),
                 together.end());
  runs = std::move(together);
}

dvColumnSpan dvNonZeroReach::reachOf(const Run& run, int dy) const {
  if (run.isSquare) {
    if (dy > run.radius || -dy > run.radius) return {0, -1};
    return {-run.radius, run.radius + 1};
  }
  const dvKernelRow* kernels = kernels_.rowsAt(dy);
  const dvKernelRow& near = kernels[run.radius];
  if (!run.isPair) return {near.begin, near.end};
  const dvKernelRow& far = kernels[run.radius + 1];
  return {std::min(near.begin, far.begin), std::max(near.end, far.end)};
}

std::vector<std::uint8_t> dvNonZeroReach::row(std::size_t plane, int y, int left, int right) const {
  const auto width = static_cast<std::size_t>(right - left);
  // Stretches that begin at a column less those that end there.
  std::vector<std::int32_t> edges(width + 1, 0);
  forEachReaching(rows_, kernels_, y, [&](std::size_t row, int dy) {
    for (const Run& run : runs_[row][plane]) {
      const dvColumnSpan reach = reachOf(run, dy);
      if (reach.empty()) continue;
      const std::int64_t begin = run.begin + reach.begin;
      const std::int64_t end = run.end - 1 + reach.end;
      if (end <= left || begin >= right) continue;
      ++edges[static_cast<std::size_t>(std::max<std::int64_t>(begin - left, 0))];
      --edges[static_cast<std::size_t>(std::min<std::int64_t>(end, right) - left)];
    }
  });
  std::vector<std::uint8_t> reached(width);
  std::int32_t open = 0;
  for (std::size_t i = 0; i < width; ++i) {
    open += edges[i];
    reached[i] = open > 0 ? 1 : 0;
  }
  return reached;
}

}  // namespace drevin
