#include "engine/SliceTiles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

#include "engine/CostModel.h"
#include "engine/Turns.h"

namespace drevin {

namespace {

/// Memory that the spectra of one slice at a side above the smallest may take.
constexpr std::size_t largestSpectra = std::size_t{96} << 20U;

std::size_t spectrumBytes(int length) {
  return sizeof(float) * static_cast<std::size_t>(length) * (static_cast<std::size_t>(length) + 32);
}

int tilesAlong(int pixels, int side) {
  return (pixels + side - 1) / side;
}

}  // namespace

const std::vector<int>& tileSides() {
  static const std::vector<int> sides{dvTileSide, 2 * dvTileSide, 3 * dvTileSide};
  return sides;
}

dvSliceTiles::dvSliceTiles(const dvSplatGroup& group, const dvGroupRows& rows, std::size_t slice,
                           const dvFrameBox& sources)
    : group_(group),
      rows_(rows),
      slice_(slice),
      sources_(sources),
      kernels_(group.kernels->largestRadius(), rows.padding(), rows.greatestShift()),
      units_(group.places.size() + 1, 1.0F) {
  layOut(dvTileSide);
}

void dvSliceTiles::layOut(int side) {
  side_ = side;
  across_ = tilesAlong(sources_.width(), side);
  tiles_.clear();
  for (int y = sources_.bottom; y < sources_.top; y += side) {
    for (int x = sources_.left; x < sources_.right; x += side) {
      Tile tile;
      tile.left = x;
      tile.bottom = y;
      tiles_.push_back(std::move(tile));
    }
  }
}

template <typename Visit>
void dvSliceTiles::forEachRecord(const Tile& tile, const Visit& visit) const {
  for (const std::size_t place : rows_.centred(tile.bottom, tile.bottom + side_)) {
    const dvGroupRows::Row& from = rows_[place];
    const dvSplatRow& row = from.splats->row;
    const dvRecordRange range = row.within(slice_, tile.left, tile.left + side_);
    for (std::size_t r = range.begin; r < range.end; ++r)
      visit(from, row.records[r], row.values.data() + r * group_.places.size());
  }
}

void dvSliceTiles::findLights(Tile& tile) const {
  const std::size_t channels = group_.places.size();
  std::vector<double> sums(channels + 1, 0.0);
  std::size_t count = 0;
  forEachRecord(tile, [&](const dvGroupRows::Row& /*from*/, const dvSplatRecord& record,
                          const float* values) {
    const auto share = static_cast<double>(record.near + record.far);
    for (std::size_t c = 0; c < channels; ++c)
      sums[c] += share * static_cast<double>(std::fabs(values[c]));
    sums[channels] += share;
    ++count;
  });
  tile.light.assign(channels + 1, 0.0F);
  for (std::size_t c = 0; c <= channels && count > 0; ++c) {
    const float mean = static_cast<float>(sums[c] / static_cast<double>(count));
    const float greatest = c == channels ? dvGreatestShare : dvGreatestTransformed;
    tile.light[c] = std::fmin(dvLightRatio * mean, greatest);
  }
}

bool dvSliceTiles::isLight(const Tile& tile, const dvSplatRecord& record,
                           const float* values) const {
  const std::size_t channels = group_.places.size();
  const float share = record.near + record.far;
  if (share > tile.light[channels]) return true;
  for (std::size_t c = 0; c < channels; ++c) {
    if (share * std::fabs(values[c]) > tile.light[c]) return true;
  }
  return false;
}

dvTileCensus dvSliceTiles::census(const Tile& tile) const {
  dvTileCensus census(kernels_);
  forEachRecord(tile, [&](const dvGroupRows::Row& from, const dvSplatRecord& record,
                          const float* values) {
    if (!isLight(tile, record, values)) census.add(kernels_, record, from.shift());
  });
  return census;
}

void dvSliceTiles::choose(dvTileChoice choice, const dvRowCost& cost, dvParallel& parallel,
                          const std::vector<int>& sides) {
  if (choice == dvTileChoice::Nothing || tiles_.empty()) return;
  std::vector<dvTileCensus> censuses(tiles_.size(), dvTileCensus(kernels_));
  const auto take = [&] {
    parallel.forEach(static_cast<int>(tiles_.size()), [&](int /*worker*/, int item) {
      Tile& tile = tiles_[static_cast<std::size_t>(item)];
      findLights(tile);
      censuses[static_cast<std::size_t>(item)] = census(tile);
    });
  };
  take();
  const int side = choice == dvTileChoice::ByCost ? chooseSide(censuses, sides, cost, parallel)
                                                  : sides.back();
  if (side != side_) {
    layOut(side);
    censuses.assign(tiles_.size(), dvTileCensus(kernels_));
    take();
  }
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int /*worker*/, int item) {
    const auto tile = static_cast<std::size_t>(item);
    tiles_[tile].plan = planTile(censuses[tile], kernels_, side_, planes(), cost, choice);
  });
  findUnits();
}

int dvSliceTiles::chooseSide(const std::vector<dvTileCensus>& parts, const std::vector<int>& sides,
                             const dvRowCost& cost, dvParallel& parallel) const {
  int best = sides.front();
  double most = 0.0;
  for (const int side : sides) {
    const double gain = gainOfSide(parts, side, cost, parallel);
    if (gain <= most) continue;
    most = gain;
    best = side;
  }
  return best;
}

// Lights are those of the smallest tiles, which is near enough for a choice.
double dvSliceTiles::gainOfSide(const std::vector<dvTileCensus>& parts, int side,
                                const dvRowCost& cost, dvParallel& parallel) const {
  const int factor = side / dvTileSide;
  const int partsUp = tilesAlong(sources_.height(), dvTileSide);
  const int across = tilesAlong(across_, factor);
  std::vector<dvTilePlan> plans(
      static_cast<std::size_t>(across * tilesAlong(partsUp, factor)));
  parallel.forEach(static_cast<int>(plans.size()), [&](int /*worker*/, int item) {
    dvTileCensus census(kernels_);
    const int left = item % across * factor;
    const int bottom = item / across * factor;
    for (int y = bottom; y < std::min(bottom + factor, partsUp); ++y) {
      for (int x = left; x < std::min(left + factor, across_); ++x)
        census.add(parts[static_cast<std::size_t>(y * across_ + x)]);
    }
    plans[static_cast<std::size_t>(item)] =
        planTile(census, kernels_, side, planes(), cost, dvTileChoice::ByCost);
  });
  std::set<std::pair<int, int>> spectra;
  double gain = 0.0;
  for (const dvTilePlan& plan : plans) {
    gain += plan.gain;
    for (int kernel = 0; kernel < kernels_.count(); ++kernel) {
      if (plan.takes(kernel)) spectra.emplace(plan.length, kernel);
    }
  }
  std::size_t bytes = 0;
  for (const auto& [length, kernel] : spectra) {
    bytes += spectrumBytes(length);
    gain -= spectrumCost(length);
  }
  return side > dvTileSide && bytes > largestSpectra ? 0.0 : gain;
}

void dvSliceTiles::findUnits() {
  for (std::size_t c = 0; c < group_.places.size(); ++c) {
    float mean = 0.0F;
    for (const Tile& tile : tiles_) {
      if (tile.plan.largest >= 0) mean = std::max(mean, tile.light[c] / dvLightRatio);
    }
    // Smaller ones would overflow the values.
    if (mean > 1e-30F) units_[c] = std::ldexp(1.0F, std::ilogb(mean));
  }
}

bool dvSliceTiles::hasTransforms() const {
  return std::any_of(tiles_.begin(), tiles_.end(),
                     [](const Tile& tile) { return tile.plan.largest >= 0; });
}

dvFrameBox dvSliceTiles::reached() const {
  dvFrameBox reached;
  for (const Tile& tile : tiles_) {
    const int reach = tile.plan.largest;
    if (reach < 0) continue;
    const dvFrameBox box{tile.left - reach, tile.bottom - reach, tile.left + side_ + reach,
                         tile.bottom + side_ + reach};
    if (reached.empty()) reached = box;
    reached = {std::min(reached.left, box.left), std::min(reached.bottom, box.bottom),
               std::max(reached.right, box.right), std::max(reached.top, box.top)};
  }
  return reached;
}

void dvSliceTiles::collectImpulses(const Tile& tile, Impulses& impulses) const {
  for (auto& kernel : impulses.byKernel)
    kernel.clear();
  impulses.byKernel.resize(static_cast<std::size_t>(kernels_.count()));
  const auto add = [&](int radius, float share, const dvGroupRows::Row& from, int place,
                       const float* values) {
    const int kernel = share > 0.0F ? kernels_.place(radius, from.shift()) : -1;
    if (tile.plan.takes(kernel))
      impulses.byKernel[static_cast<std::size_t>(kernel)].push_back({place, share, values});
  };
  forEachRecord(tile, [&](const dvGroupRows::Row& from, const dvSplatRecord& record,
                          const float* values) {
    if (isLight(tile, record, values)) return;
    const int place = (from.splats->centreY - tile.bottom) * side_ + (record.x - tile.left);
    add(record.radius, record.near, from, place, values);
    add(record.radius + 1, record.far, from, place, values);
  });
}

void dvSliceTiles::fillPlanes(const std::vector<Impulse>& splats, double kernelSquare,
                              Impulses& impulses) const {
  const std::size_t plane = static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_);
  const std::size_t channels = group_.places.size();
  std::fill(impulses.planes.begin(), impulses.planes.end(), 0.0F);
  for (const Impulse& splat : splats) {
    float* at = impulses.planes.data() + splat.place;
    for (std::size_t c = 0; c < channels; ++c)
      at[c * plane] += splat.share * (splat.values[c] / units_[c]);
    at[channels * plane] += splat.share;
  }
  for (std::size_t p = 0; p <= channels; ++p) {
    double squares = 0.0;
    for (const Impulse& splat : splats) {
      const auto value =
          static_cast<double>(impulses.planes[p * plane + static_cast<std::size_t>(splat.place)]);
      squares += value * value;
    }
    impulses.squares[p] += kernelSquare * squares;
  }
}

void dvSliceTiles::sumTile(const Tile& tile, const dvParallel& parallel, Impulses& impulses,
                           dvSpectrumCache& spectra, const dvTransformRounding& rounding) const {
  collectImpulses(tile, impulses);
  impulses.squares.assign(units_.size(), 0.0);
  impulses.sum->begin(tile.plan.length);
  for (int place = 0; place < kernels_.count() && !parallel.aborted(); ++place) {
    const auto& splats = impulses.byKernel[static_cast<std::size_t>(place)];
    if (splats.empty()) continue;
    const dvCutKernel kernel = kernels_[place];
    fillPlanes(splats, rounding.kernelSquare(kernel.radius), impulses);
    impulses.sum->add(impulses.planes.data(), spectra.spectrum(tile.plan.length, kernel));
  }
  impulses.sum->finish();
}

void dvSliceTiles::addRounding(const Tile& tile, const Impulses& impulses,
                               dvTransformRounding& rounding) const {
  const int reach = tile.plan.largest;
  const dvFrameBox reached{tile.left - reach, tile.bottom - reach, tile.left + side_ + reach,
                           tile.bottom + side_ + reach};
  const double pixels = static_cast<double>(side_) * side_;
  for (std::size_t plane = 0; plane < units_.size(); ++plane) {
    const std::size_t partner = plane % 2 == 0 ? plane + 1 : plane - 1;
    double squares = impulses.squares[plane];
    if (partner < units_.size()) squares += impulses.squares[partner];
    const auto unit = static_cast<double>(units_[plane]);
    rounding.add(static_cast<int>(plane), reached, unit * unit * squares / pixels);
  }
}

void dvSliceTiles::sum(dvSpectrumCache& spectra, dvParallel& parallel,
                       std::vector<dvFramePlane<float>>& planes,
                       dvTransformRounding& rounding) const {
  std::vector<Impulses> scratches(static_cast<std::size_t>(parallel.workers()));
  const dvFrameBox& box = planes.front().box();
  dvTurns turns;
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int worker, int item) {
    dvTurns::Turn turn(turns, item);
    const Tile& tile = tiles_[static_cast<std::size_t>(item)];
    if (tile.plan.largest < 0) return;
    Impulses& scratch = scratches[static_cast<std::size_t>(worker)];
    if (scratch.sum == nullptr) {
      scratch.sum = std::make_unique<dvTileSum>(side_, static_cast<int>(planes.size()));
      scratch.planes.resize(planes.size() * static_cast<std::size_t>(side_ * side_));
    }
    sumTile(tile, parallel, scratch, spectra, rounding);
    turn.wait();
    addRounding(tile, scratch, rounding);
    const dvTileBox inside{box.left - tile.left, box.bottom - tile.bottom, box.right - tile.left,
                           box.top - tile.bottom};
    for (std::size_t plane = 0; plane < planes.size(); ++plane) {
      float* first = planes[plane].row(box.bottom) +
                     static_cast<std::ptrdiff_t>(tile.bottom - box.bottom) * box.width() +
                     (tile.left - box.left);
      scratch.sum->addInto(static_cast<int>(plane), inside, tile.plan.largest, first, box.width());
    }
  });
}

const dvSliceTiles::Tile* dvSliceTiles::tileOf(int x, int y) const {
  if (x < sources_.left || y < sources_.bottom) return nullptr;
  const int across = (x - sources_.left) / side_;
  const int up = (y - sources_.bottom) / side_;
  if (across >= across_ || up >= tilesAlong(sources_.height(), side_)) return nullptr;
  return &tiles_[static_cast<std::size_t>(up * across_ + across)];
}

dvSplatRow dvSliceTiles::directRow(std::size_t place) const {
  dvSplatRow direct;
  const dvGroupRows::Row& from = rows_[place];
  const dvSplatRow& row = from.splats->row;
  const std::size_t channels = group_.places.size();
  for (std::size_t r = row.begin(slice_); r < row.end(slice_); ++r) {
    dvSplatRecord record = row.records[r];
    const float* values = row.values.data() + r * channels;
    const Tile* tile = tileOf(record.x, from.splats->centreY);
    if (tile != nullptr && tile->plan.largest >= 0 && !isLight(*tile, record, values)) {
      if (tile->plan.takes(kernels_.place(record.radius, from.shift()))) record.near = 0.0F;
      if (tile->plan.takes(kernels_.place(record.radius + 1, from.shift()))) record.far = 0.0F;
    }
    if (record.near == 0.0F && record.far == 0.0F) continue;
    direct.records.push_back(record);
    direct.values.insert(direct.values.end(), values, values + channels);
  }
  direct.sliceBegin = {0, static_cast<std::uint32_t>(direct.records.size())};
  return direct;
}

}  // namespace drevin
