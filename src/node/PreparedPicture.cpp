#include "node/PreparedPicture.h"

#include <algorithm>
#include <atomic>
#include <optional>

namespace drevin {

using DD::Image::Box;
using DD::Image::ChannelSet;
using DD::Image::Row;

namespace {

/// Output rows by which a band grows at least at a time.
constexpr int bandStep = 32;
/// And by which it grows at most at a time: rows may hold more than those before.
constexpr int mostStep = 8 * bandStep;

/// Output rows of which a band has at least this many. Its source rows are padding more on either
/// side, and what is in them is transformed anew for every band that they reach: of fewer rows than
/// padding a band would cost more than three times what its rows do in one picture.
int leastRows(int padding) {
  return std::max(bandStep, padding);
}

/// The source rows of a picture while its bands are made.
class SourceRows {
 public:
  SourceRows(const dvLineSource& source, const dvFrameBox& box, int padding)
      : source_(source),
        first_(box.bottom - padding),
        end_(box.top + padding),
        lines_(source.modes.size()) {
    for (auto& mode : lines_)
      mode.resize(static_cast<std::size_t>(end_ - first_));
  }

  /// Memory of the rows that are held.
  std::size_t bytes() const { return bytes_; }
  /// Output rows by which a band may grow while the rows are to take about `most` bytes: in few
  /// steps, for all threads wait at the end of each.
  int step(std::size_t most) const {
    if (held_ == 0 || bytes_ == 0) return bandStep;
    const std::size_t left = bytes_ < most ? (most - bytes_) / 2 : 0;
    const std::size_t perRow = bytes_ * lines_.size() / held_;
    const std::size_t rows = left / (perRow + 1);
    return std::clamp(static_cast<int>(std::min<std::size_t>(rows, mostStep)) / bandStep * bandStep,
                      bandStep, mostStep);
  }

  /// Reads the rows that source rows below `end` show and that have not been read.
  void readUpTo(int end, dvParallel& parallel) {
    const int last = rowOf(end - 1);
    const int begin = std::max(nextRow_.value_or(rowOf(first_)), rowOf(first_));
    parallel.forEach(last - begin + 1,
                     [&](int /*worker*/, int item) { read(begin + item, parallel); });
    nextRow_ = std::max(begin, last + 1);
  }

  /// Source rows [begin, end) of a mode.
  dvSplatLines lines(std::size_t mode, int begin, int end) const {
    dvSplatLines lines;
    for (int y = begin; y < end; ++y) {
      const std::optional<dvSplatLine>& line = lines_[mode][static_cast<std::size_t>(y - first_)];
      lines.push_back(line ? &*line : nullptr);
    }
    return lines;
  }

  void forgetBelow(int y) {
    for (auto& mode : lines_) {
      for (int i = forgotten_; i < y - first_; ++i) {
        std::optional<dvSplatLine>& line = mode[static_cast<std::size_t>(i)];
        if (line) {
          bytes_ -= line->bytes();
          --held_;
        }
        line.reset();
      }
    }
    forgotten_ = std::max(forgotten_, y - first_);
  }

 private:
  int rowOf(int sourceY) const {
    return std::max(source_.firstRow, std::min(sourceY, source_.lastRow));
  }

  /// Reads a row, and makes it for all source rows that show it: one, but for the first and the
  /// last, which may be as many as a blur reaches.
  void read(int row, const dvParallel& parallel) {
    const int begin = row == source_.firstRow ? first_ : std::max(first_, row);
    const int end = row == source_.lastRow ? end_ : std::min(end_, row + 1);
    const dvRowSplats splats = source_.read(row);
    for (int y = begin; y < end && splats != nullptr && (y == begin || !parallel.aborted()); ++y)
      take(y, splats(y));
  }

  void take(int sourceY, std::vector<dvSplatLine>&& made) {
    for (std::size_t mode = 0; mode < made.size(); ++mode) {
      bytes_ += made[mode].bytes();
      ++held_;
      lines_[mode][static_cast<std::size_t>(sourceY - first_)] = std::move(made[mode]);
    }
  }

  const dvLineSource& source_;
  int first_;
  int end_;
  std::vector<std::vector<std::optional<dvSplatLine>>> lines_;  ///< by mode and source row
  std::atomic<std::size_t> bytes_{0};
  std::atomic<std::size_t> held_{0};  ///< lines of all modes
  std::optional<int> nextRow_;
  int forgotten_ = 0;
};

}  // namespace

void dvPreparedPicture::make(const dvLineSettings& settings, const dvLineSource& source,
                             int padding, const Box& box, dvParallel& parallel,
                             const std::function<void(double)>& progress, std::size_t bandBytes) {
  clear();
  const dvFrameBox wanted{box.x(), box.y(), box.r(), box.t()};
  if (wanted.empty() || settings.channels.empty()) return;
  for (const dvDeepMode mode : source.modes) {
    for (std::size_t i = 0; i < settings.channels.size(); ++i)
      modes_[mode].emplace_back(wanted, parallel);
  }
  SourceRows rows(source, wanted, padding);
  dvFrameMaker maker(settings, padding, parallel);
  const int least = leastRows(padding);
  dvFrameBox band = wanted;
  for (band.top = wanted.bottom; band.top < wanted.top && !parallel.aborted();) {
    band.bottom = band.top;
    while (band.top < wanted.top && (band.height() < least || rows.bytes() < bandBytes)) {
      const int step = std::max(rows.step(bandBytes), least - band.height());
      band.top = std::min(band.top + step, wanted.top);
      rows.readUpTo(band.top + padding, parallel);
    }
    for (std::size_t mode = 0; mode < source.modes.size(); ++mode) {
      const auto lines = rows.lines(mode, band.bottom - padding, band.top + padding);
      maker.make(band, lines, modes_[source.modes[mode]], [&](double done) {
        const double modesDone =
            (static_cast<double>(mode) + done) / static_cast<double>(source.modes.size());
        progress((band.bottom - wanted.bottom + modesDone * band.height()) / wanted.height());
      });
    }
    rows.forgetBelow(band.top - padding);
  }
  if (parallel.aborted()) return clear();
  box_ = wanted;
  channels_ = settings.channels;
}

void dvPreparedPicture::clear() {
  box_ = {};
  channels_.clear();
  modes_.clear();
}

bool dvPreparedPicture::has(int y, int x, int r, const ChannelSet& channels,
                            dvDeepMode mode) const {
  const bool inside = y >= box_.bottom && y < box_.top && x >= box_.left && r <= box_.right;
  if (!inside || modes_.count(mode) == 0) return false;
  foreach (z, channels) {
    if (!std::binary_search(channels_.begin(), channels_.end(), static_cast<int>(z))) return false;
  }
  return true;
}

void dvPreparedPicture::copy(int y, int x, int r, const ChannelSet& channels, dvDeepMode mode,
                             Row& out) const {
  const dvFramePlanes& planes = modes_.at(mode);
  foreach (z, channels) {
    const auto place = std::lower_bound(channels_.begin(), channels_.end(), static_cast<int>(z));
    const float* row = planes[static_cast<std::size_t>(place - channels_.begin())].row(y);
    std::copy(row + (x - box_.left), row + (r - box_.left), out.writable(z) + x);
  }
}

}  // namespace drevin
