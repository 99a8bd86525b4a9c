#include "engine/SliceTiles.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>

#include "engine/CostModel.h"

namespace drevin {

namespace {

const dvSplatRow* rowOf(const dvSplatLine* line, std::size_t group) {
  if (line == nullptr || line->groups[group].empty()) return nullptr;
  return &line->groups[group].front().row;
}

}  // namespace

/// Lets workers do one thing each in the order of their items.
class dvSliceTiles::Turns {
 public:
  /// Waits for the turn of an item; passes it on at the end, whatever happens.
  class Turn {
   public:
    Turn(Turns& turns, int item) : turns_(turns), item_(item) {}
    ~Turn() {
      wait();
      const std::lock_guard<std::mutex> lock(turns_.mutex_);
      ++turns_.next_;
      turns_.changed_.notify_all();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    void wait() {
      std::unique_lock<std::mutex> lock(turns_.mutex_);
      turns_.changed_.wait(lock, [&] { return turns_.next_ == item_; });
    }

   private:
    Turns& turns_;
    int item_;
  };

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int next_ = 0;
};

dvSliceTiles::dvSliceTiles(const dvSplatGroup& group, std::size_t groupPlace, std::size_t slice,
                           const std::vector<const dvSplatLine*>& lines, int bottom, int left,
                           int right)
    : group_(group),
      groupPlace_(groupPlace),
      slice_(slice),
      lines_(lines),
      bottom_(bottom),
      left_(left),
      tilesAcross_((std::max(0, right - left) + dvTileSide - 1) / dvTileSide),
      units_(group.places.size() + 1, 1.0F) {
  const int rows = static_cast<int>(lines.size());
  for (int y = 0; y < rows; y += dvTileSide) {
    for (int i = 0; i < tilesAcross_; ++i) {
      Tile tile;
      tile.left = left + i * dvTileSide;
      tile.bottom = bottom + y;
      tiles_.push_back(std::move(tile));
    }
  }
}

template <typename Visit>
void dvSliceTiles::forEachRecord(const Tile& tile, const Visit& visit) const {
  const auto first = static_cast<std::size_t>(tile.bottom - bottom_);
  const std::size_t end = std::min(first + dvTileSide, lines_.size());
  for (std::size_t i = first; i < end; ++i) {
    const dvSplatRow* row = rowOf(lines_[i], groupPlace_);
    if (row == nullptr) continue;
    const dvRecordRange range = row->within(slice_, tile.left, tile.left + dvTileSide);
    for (std::size_t r = range.begin; r < range.end; ++r)
      visit(static_cast<int>(i - first), row->records[r],
            row->values.data() + r * group_.places.size());
  }
}

void dvSliceTiles::findLights(Tile& tile) const {
  const std::size_t channels = group_.places.size();
  std::vector<double> sums(channels + 1, 0.0);
  std::size_t count = 0;
  forEachRecord(tile, [&](int /*row*/, const dvSplatRecord& record, const float* values) {
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

void dvSliceTiles::chooseTile(Tile& tile, dvTileChoice choice) const {
  const auto radii = static_cast<std::size_t>(group_.kernels->largestRadius()) + 1;
  const int planes = static_cast<int>(group_.places.size()) + 1;
  findLights(tile);
  std::vector<int> splats(radii, 0);
  forEachRecord(tile, [&](int /*row*/, const dvSplatRecord& record, const float* values) {
    if (isLight(tile, record, values)) return;
    const auto radius = static_cast<std::size_t>(record.radius);
    splats[radius] += record.near > 0.0F ? 1 : 0;
    if (record.far > 0.0F) ++splats[radius + 1];
  });
  tile.transformed.assign(radii, 0);
  // From the largest radius down: each decides with the length that those chosen so far need.
  double gain = 0.0;
  int length = 0;
  for (std::size_t radius = radii; radius-- > 0;) {
    if (splats[radius] == 0) continue;
    const int r = static_cast<int>(radius);
    const int needed = length != 0 ? length : transformSide(dvTileSide + 2 * r);
    // A splat's two kernels are added together: each is half of its cost.
    const double saved =
        0.5 * splats[radius] * directCost(r, planes) - fourierAddCost(needed, planes);
    if (choice == dvTileChoice::ByCost && !(saved > 0.0)) continue;
    tile.transformed[radius] = 1;
    tile.largest = std::max(tile.largest, r);
    length = needed;
    gain += saved;
  }
  if (choice == dvTileChoice::ByCost && length != 0 && gain < fourierFinishCost(length, planes)) {
    tile.transformed.assign(radii, 0);
    tile.largest = -1;
  }
}

void dvSliceTiles::choose(dvTileChoice choice, dvParallel& parallel) {
  if (choice == dvTileChoice::Nothing) return;
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int /*worker*/, int item) {
    chooseTile(tiles_[static_cast<std::size_t>(item)], choice);
  });
  findUnits();
}

void dvSliceTiles::findUnits() {
  for (std::size_t c = 0; c < group_.places.size(); ++c) {
    float mean = 0.0F;
    for (const Tile& tile : tiles_) {
      if (tile.largest >= 0) mean = std::max(mean, tile.light[c] / dvLightRatio);
    }
    // Smaller ones would overflow the values.
    if (mean > 1e-30F) units_[c] = std::ldexp(1.0F, std::ilogb(mean));
  }
}

bool dvSliceTiles::hasTransforms() const {
  return std::any_of(tiles_.begin(), tiles_.end(),
                     [](const Tile& tile) { return tile.largest >= 0; });
}

void dvSliceTiles::collectImpulses(const Tile& tile, Impulses& impulses) const {
  for (auto& radius : impulses.byRadius)
    radius.clear();
  impulses.byRadius.resize(tile.transformed.size());
  const auto add = [&](std::size_t radius, float share, int place, const float* values) {
    if (share > 0.0F && tile.transformed[radius] != 0)
      impulses.byRadius[radius].push_back({place, share, values});
  };
  forEachRecord(tile, [&](int row, const dvSplatRecord& record, const float* values) {
    if (isLight(tile, record, values)) return;
    const int place = row * dvTileSide + (record.x - tile.left);
    const auto radius = static_cast<std::size_t>(record.radius);
    add(radius, record.near, place, values);
    if (record.far > 0.0F) add(radius + 1, record.far, place, values);
  });
}

void dvSliceTiles::fillPlanes(const std::vector<Impulse>& splats, double kernelSquare,
                              Impulses& impulses) const {
  constexpr std::size_t plane = static_cast<std::size_t>(dvTileSide) * dvTileSide;
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

void dvSliceTiles::sumTile(const Tile& tile, Impulses& impulses, dvSpectrumCache& spectra,
                           const dvTransformRounding& rounding) const {
  const int length = transformSide(dvTileSide + 2 * tile.largest);
  collectImpulses(tile, impulses);
  impulses.squares.assign(units_.size(), 0.0);
  impulses.sum->begin(length);
  for (int radius = 0; radius <= tile.largest; ++radius) {
    const auto& splats = impulses.byRadius[static_cast<std::size_t>(radius)];
    if (splats.empty()) continue;
    fillPlanes(splats, rounding.kernelSquare(radius), impulses);
    impulses.sum->add(impulses.planes.data(), spectra.spectrum(length, radius));
  }
  impulses.sum->finish();
}

void dvSliceTiles::addRounding(const Tile& tile, const Impulses& impulses,
                               dvTransformRounding& rounding) const {
  const int reach = tile.largest;
  const dvFrameBox reached{tile.left - reach, tile.bottom - reach, tile.left + dvTileSide + reach,
                           tile.bottom + dvTileSide + reach};
  constexpr double pixels = static_cast<double>(dvTileSide) * dvTileSide;
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
  Turns turns;
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int worker, int item) {
    Turns::Turn turn(turns, item);
    const Tile& tile = tiles_[static_cast<std::size_t>(item)];
    if (tile.largest < 0) return;
    Impulses& scratch = scratches[static_cast<std::size_t>(worker)];
    if (scratch.sum == nullptr) {
      scratch.sum = std::make_unique<dvTileSum>(dvTileSide, static_cast<int>(planes.size()));
      scratch.planes.resize(planes.size() * dvTileSide * dvTileSide);
    }
    sumTile(tile, scratch, spectra, rounding);
    turn.wait();
    addRounding(tile, scratch, rounding);
    const dvTileBox inside{box.left - tile.left, box.bottom - tile.bottom, box.right - tile.left,
                           box.top - tile.bottom};
    for (std::size_t plane = 0; plane < planes.size(); ++plane) {
      float* first = planes[plane].row(box.bottom) +
                     static_cast<std::ptrdiff_t>(tile.bottom - box.bottom) * box.width() +
                     (tile.left - box.left);
      scratch.sum->addInto(static_cast<int>(plane), inside, tile.largest, first, box.width());
    }
  });
}

const dvSliceTiles::Tile& dvSliceTiles::tileOf(std::size_t line, int x) const {
  const std::size_t down = line / dvTileSide;
  const auto across = static_cast<std::size_t>((x - left_) / dvTileSide);
  return tiles_[down * static_cast<std::size_t>(tilesAcross_) + across];
}

dvSplatRow dvSliceTiles::directRow(std::size_t line) const {
  dvSplatRow direct;
  const dvSplatRow* row = rowOf(lines_[line], groupPlace_);
  const std::size_t channels = group_.places.size();
  const std::size_t end = row == nullptr ? 0 : row->end(slice_);
  for (std::size_t r = row == nullptr ? 0 : row->begin(slice_); r < end; ++r) {
    dvSplatRecord record = row->records[r];
    const float* values = row->values.data() + r * channels;
    const Tile& tile = tileOf(line, record.x);
    if (tile.largest >= 0 && !isLight(tile, record, values)) {
      const auto radius = static_cast<std::size_t>(record.radius);
      if (tile.transformed[radius] != 0) record.near = 0.0F;
      if (record.far > 0.0F && tile.transformed[radius + 1] != 0) record.far = 0.0F;
    }
    if (record.near == 0.0F && record.far == 0.0F) continue;
    direct.records.push_back(record);
    direct.values.insert(direct.values.end(), values, values + channels);
  }
  direct.sliceBegin = {0, static_cast<std::uint32_t>(direct.records.size())};
  return direct;
}

}  // namespace drevin
