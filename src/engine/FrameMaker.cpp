#include "engine/FrameMaker.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "engine/CompositeCode.h"
#include "engine/SpecialSplats.h"

namespace drevin {

namespace {

/// Rows of splats that add to output row y: calls add(row, dy), source row by source row.
template <typename Add>
void forEachReaching(const dvGroupRows& rows, const dvKernelTable& kernels, int y, const Add& add) {
  const dvRecordRange reaching = rows.reaching(y);
  for (std::size_t row = reaching.begin; row < reaching.end; ++row) {
    // A chromatic shift may put a centre anywhere.
    const std::int64_t dy = static_cast<std::int64_t>(y) - rows[row].splats->centreY;
    if (std::abs(dy) <= kernels.largestRadius()) add(row, static_cast<int>(dy));
  }
}

}  // namespace

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
              dvFramePlane<double>(box_),
              scratches(channels),
              {},
              nullptr};
  for (std::size_t slice = 0; slice < settings_.slices && !parallel_.aborted(); ++slice) {
    if (!group.rows.isEmpty(slice)) makeSlice(group, slice, planes);
    progress(static_cast<double>(slice + 1) / static_cast<double>(settings_.slices));
  }
  parallel_.forEach(box_.height(), [&](int worker, int item) {
    finishRow(group, box_.bottom + item, planes, group.scratches[static_cast<std::size_t>(worker)]);
  });
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
  dvSliceTiles tiles(
      group.kernels, group.channels, group.rows, slice,
      {box_.left - padding_, box_.bottom - padding_, box_.right + padding_, box_.top + padding_});
  tiles.choose(choice_, group.cost, parallel_);
  if (!tiles.hasTransforms()) return false;
  const std::size_t count = group.channels + 1;
  Transformed& transformed = group.transformed;
  if (group.rounding == nullptr) {
    group.rounding =
        std::make_unique<dvTransformRounding>(box_, static_cast<int>(count), group.kernels);
    for (std::size_t plane = 0; plane < count; ++plane)
      transformed.planes.emplace_back(box_);
  }
  transformed.reached = tiles.reached(box_);
  transformed.units.clear();
  for (std::size_t plane = 0; plane < count; ++plane)
    transformed.units.push_back(static_cast<double>(tiles.unit(plane)));
  tiles.sum(group.spectra, parallel_, transformed.planes, *group.rounding);
  transformed.direct = directRows(group, tiles);
  return true;
}

dvFrameMaker::DirectRows dvFrameMaker::directRows(const Group& group,
                                                  const dvSliceTiles& tiles) const {
  DirectRows rows(group.rows.size());
  parallel_.forEach(static_cast<int>(rows.size()), [&](int /*worker*/, int item) {
    const auto row = static_cast<std::size_t>(item);
    rows[row].emplace(tiles.directRow(row));
  });
  return rows;
}

dvColumnSpan dvFrameMaker::sumRow(const Group& group, std::size_t slice, Transformed* transformed,
                                  int y, Scratch& scratch) const {
  dvRowSums& sums = *scratch.sums;
  addDirect(group, slice, transformed == nullptr ? nullptr : &transformed->direct, y, sums);
  dvColumnSpan columns = sums.touched();
  if (transformed != nullptr) columns = together(columns, transformed->columns(y));
  if (group.rows.hasSpecials()) columns = {0, box_.width()};
  for (std::size_t plane = 0; plane < scratch.planes.size(); ++plane)
    sums.store(static_cast<int>(plane), columns, scratch.planes[plane].data());
  if (transformed != nullptr) transformed->moveTo(scratch.planes, y);
  addSpecials(group, slice, y, box_.left, box_.right, scratch.planes);
  return columns;
}

void dvFrameMaker::addDirect(const Group& group, std::size_t slice, const DirectRows* direct, int y,
                             dvRowSums& sums) const {
  const dvKernelTable& kernels = group.kernels;
  sums.clear();
  forEachReaching(group.rows, kernels, y, [&](std::size_t row, int dy) {
    if (direct == nullptr) {
      const dvSplatRow& splats = group.rows[row].splats->row;
      sums.add(splats, splats.begin(slice), splats.end(slice), dy, kernels, &group.rows.reach(row));
    } else if (const std::optional<DirectRow>& left = (*direct)[row]; left) {
      sums.add(left->row, 0, left->row.records.size(), dy, kernels, &left->reach);
    }
    sums.endSourceRow();
  });
  sums.finish();
}

void dvFrameMaker::addSpecials(const Group& group, std::size_t slice, int y, int left, int right,
                               std::vector<std::vector<double>>& sums) const {
  if (!group.rows.hasSpecials()) return;
  const dvKernelTable& kernels = group.kernels;
  forEachReaching(group.rows, kernels, y, [&](std::size_t row, int dy) {
    addSpecialSplats(group.rows[row].splats->specials, static_cast<std::uint32_t>(slice), dy,
                     kernels, left, right, sums);
  });
}

dvColumnSpan dvFrameMaker::Transformed::columns(int y) const {
  return reached[static_cast<std::size_t>(y - planes.front().box().bottom)];
}

void dvFrameMaker::Transformed::moveTo(std::vector<std::vector<double>>& sums, int y) {
  const dvColumnSpan span = columns(y);
  if (span.empty()) return;
  for (std::size_t plane = 0; plane < planes.size(); ++plane) {
    compositeCode().moveScaled(planes[plane].row(y) + span.begin, units[plane],
                               sums[plane].data() + span.begin, span.end - span.begin);
  }
}

void dvFrameMaker::pointAt(const Group& group, int x, int y, dvFramePlanes& planes,
                           std::vector<float*>& colours) {
  const std::vector<std::size_t>& places = group.settings.places;
  colours.resize(group.channels);
  for (std::size_t i = 0; i < group.channels; ++i)
    colours[i] = planes[places[i]].row(y) + (x - planes[places[i]].box().left);
}

void dvFrameMaker::finishRow(Group& group, int y, dvFramePlanes& planes, Scratch& scratch) const {
  const double* coverage = group.coverage.row(y);
  for (int left = box_.left; left < box_.right && group.rounding != nullptr;
       left += dvRepairColumns) {
    const int right = std::min(left + dvRepairColumns, box_.right);
    pointAt(group, left, y, planes, scratch.colours);
    if (isInDoubt(scratch.colours, coverage + (left - box_.left), right - left, *group.rounding,
                  left, y))
      repairSpan(group, y, left, right, scratch.colours);
  }
  pointAt(group, box_.left, y, planes, scratch.colours);
  divideByCoverage(scratch.colours, coverage, box_.width());
  const std::vector<std::size_t>& places = group.settings.places;
  if (group.channels < places.size())
    divideCoverageByItself(coverage, box_.width(), planes[places.back()].row(y));
}

void dvFrameMaker::repairSpan(Group& group, int y, int left, int right,
                              const std::vector<float*>& colours) const {
  const int channels = static_cast<int>(colours.size());
  const int width = right - left;
  const dvKernelTable& kernels = group.kernels;
  dvRowSums sums(channels, left, right, dvRowShape::Dense);
  std::vector<std::vector<double>> row(colours.size() + 1,
                                       std::vector<double>(static_cast<std::size_t>(width)));
  for (float* colour : colours)
    std::fill_n(colour, width, 0.0F);
  double* coverage = group.coverage.row(y) + (left - box_.left);
  std::fill_n(coverage, width, 0.0);
  const int reach = kernels.largestRadius();
  for (std::size_t slice = 0; slice < settings_.slices; ++slice) {
    sums.clear();
    forEachReaching(group.rows, kernels, y, [&](std::size_t place, int dy) {
      const dvSplatRow& splats = group.rows[place].splats->row;
      const dvRecordRange range = splats.within(slice, left - reach, right + reach);
      sums.add(splats, range.begin, range.end, dy, kernels, &group.rows.reach(place));
      sums.endSourceRow();
    });
    sums.finish();
    for (int plane = 0; plane <= channels; ++plane)
      sums.store(plane, row[static_cast<std::size_t>(plane)].data());
    addSpecials(group, slice, y, left, right, row);
    compositeSlice(row, {0, width}, colours, coverage);
  }
}

}  // namespace drevin
