#include "node/DeepPicture.h"

#include <algorithm>
#include <atomic>

#include "DDImage/Thread.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Row;
using DD::Image::Thread;

namespace {

/// Output rows of a band: enough to keep many processors busy between two meetings.
constexpr int bandRows = 32;

}  // namespace

/// The making of one picture, band by band: while the rows of one are made, the source rows that
/// the next needs are read.
class dvDeepPicture::Making {
 public:
  Making(dvDeepPicture& picture, const dvDeepPlan& plan)
      : picture_(picture),
        plan_(plan),
        lines_(static_cast<std::size_t>(std::max(0, plan.formatHeight))) {}

  /// Rows [y, t) are made from lines that are there; those that `nextBand` needs are read.
  void step(int y, int t, int nextBand) {
    rows_ = {y, t};
    const int reach = plan_.frame.padding;
    const int height = static_cast<int>(lines_.size());
    // Rows outside the format are made from its first or last row alone.
    const int first = std::max(0, std::min(picture_.box_.y() - reach, height - 1));
    const int last = std::max(std::min(1, height), std::min(nextBand + reach, height));
    newLines_ = {std::max(linesEnd_, first), last};
    next_ = 0;
    if (Thread::spawn(threadBody, Thread::numCPUs, this)) {
      Thread::wait(this);
    } else {
      work();
    }
    linesEnd_ = std::max(linesEnd_, last);
    forgetLinesBelow(t - reach);
  }

  std::uint64_t mergedPixels() const { return mergedPixels_; }

 private:
  struct Range {
    int begin = 0;
    int end = 0;
    int size() const { return std::max(0, end - begin); }
  };

  static void threadBody(unsigned /*index*/, unsigned /*count*/, void* self) {
    static_cast<Making*>(self)->work();
  }

  void work() {
    const int count = newLines_.size() + rows_.size();
    for (int i = next_++; i < count && !plan_.aborted(); i = next_++) {
      if (i < newLines_.size()) {
        readLine(newLines_.begin + i);
      } else {
        makeRow(rows_.begin + i - newLines_.size());
      }
    }
  }

  void readLine(int y) {
    auto line = std::make_unique<dvDeepLine>(plan_, y);
    mergedPixels_ += line->mergedPixels();
    lines_[static_cast<std::size_t>(y)] = std::move(line);
  }

  void makeRow(int y) {
    const auto lineAt = [&](int row) { return lines_[static_cast<std::size_t>(row)].get(); };
    for (std::size_t mode = 0; mode < plan_.modes.size(); ++mode) {
      Planes& planes = picture_.modes_.at(plan_.modes[mode].mode);
      const auto target = [&](std::size_t place) {
        const auto channel = static_cast<Channel>(plan_.channels[place].number);
        return planes.at(channel).data() + picture_.offset(y);
      };
      makeDeepRow(plan_, mode, y, lineAt, target);
    }
  }

  /// Row 0 stands in for all rows below the picture and the topmost for all above it; by the order
  /// of the bands both are still there when they are needed.
  void forgetLinesBelow(int y) {
    const int end = std::min(y, static_cast<int>(lines_.size()) - 1);
    for (; forgotten_ < end; ++forgotten_)
      lines_[static_cast<std::size_t>(forgotten_)].reset();
  }

  dvDeepPicture& picture_;
  const dvDeepPlan& plan_;
  std::vector<std::unique_ptr<dvDeepLine>> lines_;  ///< by row of the format
  int linesEnd_ = 0;                                ///< rows below it have been read
  int forgotten_ = 0;                               ///< rows below it have been let go
  Range rows_;
  Range newLines_;
  std::atomic<int> next_{0};
  std::atomic<std::uint64_t> mergedPixels_{0};
};

std::ptrdiff_t dvDeepPicture::offset(int y) const {
  return static_cast<std::ptrdiff_t>(y - box_.y()) * box_.w() - box_.x();
}

void dvDeepPicture::make(const dvDeepPlan& plan, const Box& box,
                         const std::function<void(double)>& progress) {
  clear();
  if (box.w() <= 0 || box.h() <= 0 || plan.channels.empty() || plan.deep == nullptr) return;
  box_ = box;
  const auto pixels = static_cast<std::size_t>(box.w()) * static_cast<std::size_t>(box.h());
  for (const dvDeepChannel& channel : plan.channels)
    channels_ += static_cast<Channel>(channel.number);
  for (const dvDeepSettings& mode : plan.modes) {
    foreach (z, channels_)
      modes_[mode.mode][z].resize(pixels);
  }
  Making making(*this, plan);
  for (int y = box.y() - bandRows; y < box.t() && !plan.aborted(); y += bandRows) {
    making.step(std::max(y, box.y()), std::min(y + bandRows, box.t()),
                std::min(y + 2 * bandRows, box.t()));
    progress(static_cast<double>(std::min(y + bandRows, box.t()) - box.y()) / box.h());
  }
  if (plan.aborted()) return clear();
  mergedPixels_ = making.mergedPixels();
}

void dvDeepPicture::clear() {
  box_.clear();
  channels_.clear();
  modes_.clear();
  mergedPixels_ = 0;
}

bool dvDeepPicture::has(int y, int x, int r, const ChannelSet& channels, dvDeepMode mode) const {
  return modes_.count(mode) != 0 && channels_.contains(channels) &&
         box_.contains(Box(x, y, r, y + 1));
}

void dvDeepPicture::copy(int y, int x, int r, const ChannelSet& channels, dvDeepMode mode,
                         Row& out) const {
  const Planes& planes = modes_.at(mode);
  foreach (z, channels) {
    const float* row = planes.at(z).data() + offset(y);
    std::copy(row + x, row + r, out.writable(z) + x);
  }
}

}  // namespace drevin
