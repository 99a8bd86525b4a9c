#include "engine/FrameMaker.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "engine/SpecialSplats.h"

namespace drevin {

dvFrameMaker::dvFrameMaker(const dvLineSettings& settings, int padding, dvParallel& parallel)
    : settings_(settings), padding_(padding), parallel_(parallel) {}

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
  coverage_ = dvFramePlane<double>(box_);
  const int channels = static_cast<int>(settings_.groups[group].places.size());
  std::vector<Scratch> scratches(static_cast<std::size_t>(parallel_.workers()));
  for (Scratch& scratch : scratches) {
    scratch.sums = std::make_unique<dvRowSums>(channels, box_.left, box_.right);
    scratch.planes.assign(static_cast<std::size_t>(channels) + 1,
                          std::vector<double>(static_cast<std::size_t>(box_.width())));
  }
  for (std::size_t slice = 0; slice < settings_.slices; ++slice) {
    if (sliceIsEmpty(group, slice)) continue;
    parallel_.forEach(box_.height(), [&](int worker, int item) {
      Scratch& scratch = scratches[static_cast<std::size_t>(worker)];
      sumRow(group, slice, box_.bottom + item, scratch);
      compositeRow(group, box_.bottom + item, scratch, planes);
    });
    progress(static_cast<double>(slice + 1) / static_cast<double>(settings_.slices));
  }
  parallel_.forEach(box_.height(), [&](int /*worker*/, int item) {
    normaliseRow(group, box_.bottom + item, planes);
  });
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
      if (std::abs(dy) <= largest) add(splats, static_cast<int>(dy));
    }
  }
}

void dvFrameMaker::sumRow(std::size_t group, std::size_t slice, int y, Scratch& scratch) const {
  const dvKernelTable& kernels = *settings_.groups[group].kernels;
  dvRowSums& sums = *scratch.sums;
  sums.clear();
  forEachReaching(group, y, [&](const dvCentredSplats& splats, int dy) {
    sums.add(splats.row, splats.row.begin(slice), splats.row.end(slice), dy, kernels);
    sums.endSourceRow();
  });
  sums.finish();
  for (std::size_t plane = 0; plane < scratch.planes.size(); ++plane)
    sums.store(static_cast<int>(plane), scratch.planes[plane].data());
  forEachReaching(group, y, [&](const dvCentredSplats& splats, int dy) {
    addSpecialSplats(splats.specials, static_cast<std::uint32_t>(slice), dy, kernels, box_.left,
                     box_.right, scratch.planes);
  });
}

void dvFrameMaker::compositeRow(std::size_t group, int y, const Scratch& scratch,
                                dvFramePlanes& planes) {
  double* coverage = coverage_.row(y);
  const double* weights = scratch.planes.back().data();
  const std::vector<std::size_t>& places = settings_.groups[group].places;
  for (int i = 0; i < box_.width(); ++i) {
    const double room = 1.0 - coverage[i];
    double weight = weights[i];
    double share = 1.0;
    if (room < weight) {
      share = room / weight;
      weight = room;
    }
    for (std::size_t c = 0; c < places.size(); ++c)
      planes[places[c]].row(y)[i] +=
          static_cast<float>(share * scratch.planes[c][static_cast<std::size_t>(i)]);
    coverage[i] += weight;
  }
}

void dvFrameMaker::normaliseRow(std::size_t group, int y, dvFramePlanes& planes) const {
  const double* coverage = coverage_.row(y);
  for (const std::size_t place : settings_.groups[group].places) {
    float* values = planes[place].row(y);
    for (int i = 0; i < box_.width(); ++i) {
      if (coverage[i] > 0.0)
        values[i] = static_cast<float>(static_cast<double>(values[i]) / coverage[i]);
    }
  }
}

}  // namespace drevin
