#include "engine/FrameMaker.h"

#include <algorithm>
#include <utility>

#include "engine/Composite.h"
#include "engine/CompositeCode.h"
#include "engine/DirectSums.h"
#include "engine/NonZeroReach.h"
#include "engine/Repair.h"

namespace drevin {

dvFrameMaker::dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel,
                           dvTileChoice choice)
    : settings_(settings), padding_(padding), parallel_(parallel), choice_(choice) {}

void dvFrameMaker::make(const dvFrameBox& box, const dvSplatLines& lines, dvFramePlanes& planes,
                        const std::function<void(double)>& progress) {
  box_ = box;
  const auto groups = static_cast<double>(settings_.groups.size());
  for (std::size_t group = 0; group < settings_.groups.size() && !box.empty(); ++group) {
    makeGroup(group, lines, planes,
              [&](double done) { progress((static_cast<double>(group) + done) / groups); });
  }
}

dvSpectrumCache& dvFrameMaker::spectraOf(const dvKernelTable& kernels) {
  return spectra_.try_emplace(&kernels, kernels).first->second;
}

std::vector<dvFrameMaker::Scratch> dvFrameMaker::scratches(std::size_t channels) const {
  std::vector<Scratch> scratches(static_cast<std::size_t>(parallel_.workers()));
  for (Scratch& scratch : scratches) {
    scratch.sums = std::make_unique<dvRowSums>(static_cast<int>(channels), box_.left, box_.right);
    scratch.planes.assign(channels + 1,
                          std::vector<double>(static_cast<std::size_t>(box_.width())));
    scratch.colours.resize(channels);
  }
  return scratches;
}

void dvFrameMaker::makeGroup(std::size_t place, const dvSplatLines& lines, dvFramePlanes& planes,
                             const std::function<void(double)>& progress) {
  const dvSplatGroup& settings = settings_.groups[place];
  dvGroupRows rows(lines, place, box_.bottom - padding_, padding_, parallel_);
  const std::size_t all = settings.places.size();
  const std::size_t channels = rows.lastIsOne() && all > 1 ? all - 1 : all;
  Group group{settings,
              channels,
              *settings.kernels,
              spectraOf(*settings.kernels),
              {*settings.kernels, static_cast<int>(channels)},
              std::move(rows),
              dvFramePlane<double>(box_, parallel_),
              scratches(channels),
              {},
              nullptr,
              nullptr};
  if (group.rows.hasNotFinite())
    group.signs = std::make_unique<dvKernelSigns>(group.kernels, parallel_);
  for (std::size_t slice = 0; slice < settings_.slices && !parallel_.aborted(); ++slice) {
    if (!group.rows.isEmpty(slice)) makeSlice(group, slice, planes);
    progress(static_cast<double>(slice + 1) / static_cast<double>(settings_.slices));
  }
  finish(group, planes);
}

void dvFrameMaker::makeSlice(Group& group, std::size_t slice, dvFramePlanes& planes) {
  const bool transformed = transform(group, slice);
  parallel_.forEach(box_.height(), [&](int worker, int item) {
    Scratch& scratch = group.scratches[static_cast<std::size_t>(worker)];
    const int y = box_.bottom + item;
    const dvColumnSpan columns =
        sumRow(group, slice, transformed ? &group.transformed : nullptr, y, scratch);
    pointAt(group, box_.left, y, planes, scratch.colours);
    compositeSlice(scratch.planes, columns, scratch.colours, group.coverage.row(y));
  });
}

bool dvFrameMaker::transform(Group& group, std::size_t slice) {
  Transformed& transformed = group.transformed;
  transformed.direct.clear();  // before more memory is taken
  dvSliceTiles tiles(
      group.kernels, group.channels, group.rows, slice,
      {box_.left - padding_, box_.bottom - padding_, box_.right + padding_, box_.top + padding_});
  tiles.choose(choice_, group.cost, box_, parallel_);
  if (!tiles.hasTransforms()) return false;
  const std::size_t count = group.channels + 1;
  if (group.rounding == nullptr) {
    group.rounding = std::make_unique<dvTransformRounding>(box_, static_cast<int>(count),
                                                           group.kernels, parallel_);
    for (std::size_t plane = 0; plane < count; ++plane)
      transformed.planes.emplace_back(box_, parallel_);
  }
  transformed.reached = tiles.reached(box_);
  // Slices have few kernels in common, but tiles of one slice many.
  if (group.spectra.bytes() > dvKeptSpectra) group.spectra.clear();
  tiles.sum(group.spectra, parallel_, transformed.planes, *group.rounding);
  transformed.direct = directRows(group, tiles);
  return true;
}

dvFrameMaker::DirectRows dvFrameMaker::directRows(const Group& group,
                                                  const dvSliceTiles& tiles) const {
  DirectRows rows(group.rows.size());
  parallel_.forEach(static_cast<int>(rows.size()), [&](int /*worker*/, int item) {
    const auto row = static_cast<std::size_t>(item);
    rows[row] = dvReadyRow(tiles.directRow(row), box_.left);
  });
  return rows;
}

dvColumnSpan dvFrameMaker::sumRow(const Group& group, std::size_t slice, Transformed* transformed,
                                  int y, Scratch& scratch) const {
  dvRowSums& sums = *scratch.sums;
  if (transformed != nullptr) {
    addDirect(group, transformed->direct, y, sums);
  } else {
    sumSplats(group.rows, group.kernels, slice, y, sums);
  }
  dvColumnSpan columns = sums.touched();
  if (transformed != nullptr) columns = together(columns, transformed->columns(y));
  if (group.rows.hasSpecials() || group.signs != nullptr) columns = {0, box_.width()};
  for (std::size_t plane = 0; plane < scratch.planes.size(); ++plane)
    sums.store(static_cast<int>(plane), columns, scratch.planes[plane].data());
  if (transformed != nullptr) transformed->moveTo(scratch.planes, y);
  addSpecials(group.rows, group.kernels, slice, y, box_.left, box_.right, scratch.planes);
  if (group.signs != nullptr) {
    addNotFinite(group.rows, group.kernels, *group.signs, slice, y, box_.left, box_.right,
                 scratch.planes);
  }
  return columns;
}

void dvFrameMaker::addDirect(const Group& group, const DirectRows& direct, int y, dvRowSums& sums) {
  sums.clear();
  forEachReaching(group.rows, group.kernels, y, [&](std::size_t row, int dy) {
    sums.add(direct[row], dy, group.kernels);
    sums.endSourceRow();
  });
  sums.finish();
}

dvColumnSpan dvFrameMaker::Transformed::columns(int y) const {
  return reached[static_cast<std::size_t>(y - planes.front().box().bottom)];
}

void dvFrameMaker::Transformed::moveTo(std::vector<std::vector<double>>& sums, int y) {
  const dvColumnSpan span = columns(y);
  if (span.empty()) return;
  for (std::size_t plane = 0; plane < planes.size(); ++plane) {
    compositeCode().move(planes[plane].row(y) + span.begin, sums[plane].data() + span.begin,
                         span.end - span.begin);
  }
}

void dvFrameMaker::pointAt(const Group& group, int x, int y, dvFramePlanes& planes,
                           std::vector<float*>& colours) {
  const std::vector<std::size_t>& places = group.settings.places;
  colours.resize(group.channels);
  for (std::size_t i = 0; i < group.channels; ++i)
    colours[i] = planes[places[i]].row(y) + (x - planes[places[i]].box().left);
}

void dvFrameMaker::finish(Group& group, dvFramePlanes& planes) {
  const auto height = static_cast<std::size_t>(box_.height());
  std::vector<std::uint8_t> later(height, 0);
  parallel_.forEach(box_.height(), [&](int worker, int item) {
    Scratch& scratch = group.scratches[static_cast<std::size_t>(worker)];
    const int y = box_.bottom + item;
    if (group.rounding != nullptr && mayBeNothing(group, y, planes, scratch)) {
      later[static_cast<std::size_t>(item)] = 1;
    } else {
      finishRow(group, y, nullptr, planes, scratch);
    }
  });
  if (parallel_.aborted() || std::count(later.begin(), later.end(), 1) == 0) return;
  const dvNonZeroReach reach(group.rows, group.kernels, group.channels, parallel_);
  parallel_.forEach(box_.height(), [&](int worker, int item) {
    if (later[static_cast<std::size_t>(item)] == 0) return;
    Scratch& scratch = group.scratches[static_cast<std::size_t>(worker)];
    const int y = box_.bottom + item;
    pointAt(group, box_.left, y, planes, scratch.colours);
    const dvReachedColumns reached =
        clearUnreached(reach, y, box_.left, box_.right, scratch.colours, group.coverage.row(y));
    finishRow(group, y, &reached, planes, scratch);
  });
}

template <typename Visit>
void dvFrameMaker::forEachCell(Group& group, int y, dvFramePlanes& planes, Scratch& scratch,
                               const Visit& visit) const {
  for (int left = box_.left; left < box_.right; left += dvRepairColumns) {
    pointAt(group, left, y, planes, scratch.colours);
    if (!visit(left, std::min(left + dvRepairColumns, box_.right))) return;
  }
}

bool dvFrameMaker::mayBeNothing(Group& group, int y, dvFramePlanes& planes,
                                Scratch& scratch) const {
  bool may = false;
  forEachCell(group, y, planes, scratch, [&](int left, int right) {
    may = drevin::mayBeNothing(scratch.colours, group.coverage.row(y) + (left - box_.left),
                               right - left, *group.rounding, left, y);
    return !may;
  });
  return may;
}

void dvFrameMaker::repairRow(Group& group, int y, const dvReachedColumns* reached,
                             dvFramePlanes& planes, Scratch& scratch) const {
  forEachCell(group, y, planes, scratch, [&](int left, int right) {
    const int column = left - box_.left;
    double* coverage = group.coverage.row(y) + column;
    const dvDoubtfulColumns columns{left, y, right - left, column, reached};
    if (isInDoubt(scratch.colours, coverage, columns, *group.rounding)) {
      repairSpan(group.rows, group.kernels, group.signs.get(), settings_.slices, y, left, right,
                 scratch.colours, coverage);
    }
    return true;
  });
}

void dvFrameMaker::finishRow(Group& group, int y, const dvReachedColumns* reached,
                             dvFramePlanes& planes, Scratch& scratch) const {
  if (group.rounding != nullptr) repairRow(group, y, reached, planes, scratch);
  const double* coverage = group.coverage.row(y);
  pointAt(group, box_.left, y, planes, scratch.colours);
  divideByCoverage(scratch.colours, coverage, box_.width());
  const std::vector<std::size_t>& places = group.settings.places;
  if (group.channels < places.size())
    divideCoverageByItself(coverage, box_.width(), planes[places.back()].row(y));
}

}  // namespace drevin
