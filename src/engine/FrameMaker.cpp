#include "engine/FrameMaker.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "engine/SpecialSplats.h"

namespace drevin {

namespace {

/// Lays the sums of a slice under what is there, as far as there is room.
void compositeSlice(const std::vector<std::vector<double>>& sums, int width,
                    const std::vector<float*>& colours, double* coverage) {
  const std::vector<double>& weights = sums.back();
  for (int i = 0; i < width; ++i) {
    const auto column = static_cast<std::size_t>(i);
    const double room = 1.0 - coverage[i];
    double weight = weights[column];
    double share = 1.0;
    if (room < weight) {
      share = room / weight;
      weight = room;
    }
    for (std::size_t c = 0; c < colours.size(); ++c)
      colours[c][i] += static_cast<float>(share * sums[c][column]);
    coverage[i] += weight;
  }
}

}  // namespace

dvFrameMaker::dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel,
                           dvTileChoice choice)
    : settings_(settings), padding_(padding), parallel_(parallel), choice_(choice) {}

void dvFrameMaker::make(const dvFrameBox& box, const dvSplatLines& lines, dvFramePlanes& planes,
                        const std::function<void(double)>& progress) {
  box_ = box;
  lines_ = &lines;
  const auto groups = static_cast<double>(settings_.groups.size());
  for (std::size_t group = 0; group < settings_.groups.size() && !box.empty(); ++group) {
    makeGroup(group, planes,
              [&](double done) { progress((static_cast<double>(group) + done) / groups); });
  }
}

void dvFrameMaker::makeGroup(std::size_t group, dvFramePlanes& planes,
                             const std::function<void(double)>& progress) {
  Group made;
  made.place = group;
  made.spectra = std::make_unique<dvSpectrumCache>(*settings_.groups[group].kernels);
  made.coverage = dvFramePlane<double>(box_);
  made.scratches.resize(static_cast<std::size_t>(parallel_.workers()));
  const std::size_t channels = settings_.groups[group].places.size();
  for (Scratch& scratch : made.scratches) {
    scratch.sums = std::make_unique<dvRowSums>(static_cast<int>(channels), box_.left, box_.right);
    scratch.planes.assign(channels + 1,
                          std::vector<double>(static_cast<std::size_t>(box_.width())));
  }
  for (std::size_t slice = 0; slice < settings_.slices && !parallel_.aborted(); ++slice) {
    if (!sliceIsEmpty(group, slice)) makeSlice(made, slice, planes);
    progress(static_cast<double>(slice + 1) / static_cast<double>(settings_.slices));
  }
  parallel_.forEach(box_.height(),
                    [&](int /*worker*/, int item) { finishRow(made, box_.bottom + item, planes); });
}

void dvFrameMaker::makeSlice(Group& group, std::size_t slice, dvFramePlanes& planes) {
  const dvSplatGroup& settings = settings_.groups[group.place];
  dvSliceTiles tiles(settings, group.place, slice, *lines_, box_.bottom - padding_,
                     box_.left - padding_, box_.right + padding_);
  // A shift may carry a kernel out of the rows that its source reaches, and is cut off there.
  if (settings.shift == 0.0F) tiles.choose(choice_, parallel_);
  std::vector<dvFramePlane<float>> transformed;
  DirectRows direct;
  const bool hasTransforms = tiles.hasTransforms();
  if (hasTransforms) {
    const std::size_t count = settings.places.size() + 1;
    if (group.rounding == nullptr) {
      group.rounding =
          std::make_unique<dvTransformRounding>(box_, static_cast<int>(count), *settings.kernels);
    }
    transformed.assign(count, dvFramePlane<float>(box_));
    tiles.sum(*group.spectra, parallel_, transformed, *group.rounding);
    direct = directRows(tiles);
  }
  parallel_.forEach(box_.height(), [&](int worker, int item) {
    Scratch& scratch = group.scratches[static_cast<std::size_t>(worker)];
    const int y = box_.bottom + item;
    sumRow(group, slice, hasTransforms ? &direct : nullptr, y, scratch);
    for (std::size_t plane = 0; plane < transformed.size(); ++plane) {
      const float* row = transformed[plane].row(y);
      const auto unit = static_cast<double>(tiles.unit(plane));
      for (std::size_t i = 0; i < scratch.planes[plane].size(); ++i)
        scratch.planes[plane][i] += unit * static_cast<double>(row[i]);
    }
    compositeRow(group, y, scratch, planes);
  });
}

dvFrameMaker::DirectRows dvFrameMaker::directRows(const dvSliceTiles& tiles) const {
  DirectRows rows(lines_->size());
  parallel_.forEach(static_cast<int>(rows.size()), [&](int /*worker*/, int item) {
    const auto line = static_cast<std::size_t>(item);
    rows[line].emplace(tiles.directRow(line));
  });
  return rows;
}

bool dvFrameMaker::sliceIsEmpty(std::size_t group, std::size_t slice) const {
  const auto holds = [&](const dvCentredSplats& splats) {
    return splats.row.begin(slice) < splats.row.end(slice) || !splats.specials.empty();
  };
  for (const dvSplatLine* line : *lines_) {
    if (line == nullptr) continue;
    const auto& rows = line->groups[group];
    if (std::any_of(rows.begin(), rows.end(), holds)) return false;
  }
  return true;
}

template <typename Add>
void dvFrameMaker::forEachReaching(std::size_t group, int y, const Add& add) const {
  const int largest = settings_.groups[group].kernels->largestRadius();
  const auto first = static_cast<std::size_t>(y - box_.bottom);
  const std::size_t end = first + 2 * static_cast<std::size_t>(padding_) + 1;
  for (std::size_t i = first; i < end; ++i) {
    const dvSplatLine* line = (*lines_)[i];
    if (line == nullptr) continue;
    for (const dvCentredSplats& splats : line->groups[group]) {
      // A chromatic shift may put a centre anywhere.
      const std::int64_t dy = static_cast<std::int64_t>(y) - splats.centreY;
      if (std::abs(dy) <= largest) add(splats, i, static_cast<int>(dy));
    }
  }
}

void dvFrameMaker::sumRow(const Group& group, std::size_t slice, const DirectRows* direct, int y,
                          Scratch& scratch) const {
  const dvKernelTable& kernels = *settings_.groups[group.place].kernels;
  dvRowSums& sums = *scratch.sums;
  sums.clear();
  forEachReaching(group.place, y, [&](const dvCentredSplats& splats, std::size_t line, int dy) {
    if (direct == nullptr) {
      sums.add(splats.row, splats.row.begin(slice), splats.row.end(slice), dy, kernels);
    } else if (const std::optional<DirectRow>& left = (*direct)[line]; left) {
      sums.add(left->row, 0, left->row.records.size(), dy, kernels, &left->reach);
    }
    sums.endSourceRow();
  });
  sums.finish();
  for (std::size_t plane = 0; plane < scratch.planes.size(); ++plane)
    sums.store(static_cast<int>(plane), scratch.planes[plane].data());
  addSpecials(group, slice, y, box_.left, box_.right, scratch.planes);
}

void dvFrameMaker::addSpecials(const Group& group, std::size_t slice, int y, int left, int right,
                               std::vector<std::vector<double>>& sums) const {
  const dvKernelTable& kernels = *settings_.groups[group.place].kernels;
  forEachReaching(group.place, y, [&](const dvCentredSplats& splats, std::size_t /*line*/, int dy) {
    addSpecialSplats(splats.specials, static_cast<std::uint32_t>(slice), dy, kernels, left, right,
                     sums);
  });
}

void dvFrameMaker::compositeRow(Group& group, int y, const Scratch& scratch,
                                dvFramePlanes& planes) const {
  const std::vector<std::size_t>& places = settings_.groups[group.place].places;
  std::vector<float*> colours;
  colours.reserve(places.size());
  for (const std::size_t place : places)
    colours.push_back(planes[place].row(y));
  compositeSlice(scratch.planes, box_.width(), colours, group.coverage.row(y));
}

void dvFrameMaker::finishRow(Group& group, int y, dvFramePlanes& planes) const {
  double* coverage = group.coverage.row(y);
  const int width = box_.width();
  for (int i = 0; i < width && group.rounding != nullptr; i += dvRepairColumns) {
    const int left = box_.left + i;
    const int right = std::min(left + dvRepairColumns, box_.right);
    if (isInDoubt(group, y, left, right, planes)) repairSpan(group, y, left, right, planes);
  }
  for (const std::size_t place : settings_.groups[group.place].places) {
    float* values = planes[place].row(y);
    for (int i = 0; i < width; ++i) {
      if (coverage[i] > 0.0)
        values[i] = static_cast<float>(static_cast<double>(values[i]) / coverage[i]);
    }
  }
}

bool dvFrameMaker::isInDoubt(const Group& group, int y, int left, int right,
                             const dvFramePlanes& planes) const {
  const std::vector<std::size_t>& places = settings_.groups[group.place].places;
  const double* coverage = group.coverage.row(y) + (left - box_.left);
  const double weightError = group.rounding->error(static_cast<int>(places.size()), left, y);
  for (int i = 0; i < right - left; ++i) {
    if (coverage[i] < dvRepairCoverage) return true;
  }
  for (std::size_t plane = 0; plane < places.size(); ++plane) {
    const float* sums = planes[places[plane]].row(y) + (left - box_.left);
    const double error = group.rounding->error(static_cast<int>(plane), left, y);
    for (int i = 0; i < right - left; ++i) {
      const double sum = std::fabs(static_cast<double>(sums[i]));
      const double allowed = dvRepairAbsolute * coverage[i] + dvRepairRelative * sum;
      if (error + weightError * sum / coverage[i] > allowed) return true;
    }
  }
  return false;
}

void dvFrameMaker::repairSpan(Group& group, int y, int left, int right,
                              dvFramePlanes& planes) const {
  const dvSplatGroup& settings = settings_.groups[group.place];
  const int width = right - left;
  dvRowSums sums(static_cast<int>(settings.places.size()), left, right, dvRowShape::Dense);
  std::vector<std::vector<double>> row(settings.places.size() + 1,
                                       std::vector<double>(static_cast<std::size_t>(width)));
  std::vector<float*> colours;
  for (const std::size_t place : settings.places) {
    colours.push_back(planes[place].row(y) + (left - box_.left));
    std::fill_n(colours.back(), width, 0.0F);
  }
  double* coverage = group.coverage.row(y) + (left - box_.left);
  std::fill_n(coverage, width, 0.0);
  for (std::size_t slice = 0; slice < settings_.slices; ++slice) {
    sums.clear();
    forEachReaching(
        group.place, y, [&](const dvCentredSplats& splats, std::size_t /*line*/, int dy) {
          const int reach = settings.kernels->largestRadius();
          const dvRecordRange range = splats.row.within(slice, left - reach, right + reach);
          sums.add(splats.row, range.begin, range.end, dy, *settings.kernels);
          sums.endSourceRow();
        });
    sums.finish();
    for (std::size_t plane = 0; plane < row.size(); ++plane)
      sums.store(static_cast<int>(plane), row[plane].data());
    addSpecials(group, slice, y, left, right, row);
    compositeSlice(row, width, colours, coverage);
  }
}

}  // namespace drevin
