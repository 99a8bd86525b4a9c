#pragma once

/// A deep picture with mended depths and colours, sample by sample as it is read.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "prepare/PictureFixes.h"

namespace drevintool {

/// Serves the samples of another source with these changes:
///
/// * a front or a back that is a code for nothing (see DepthCodes) gets the fix's depth, the back
/// at
///   least the front; a front of 0 before a back that is a distance is one, at the camera;
/// * samples whose largest colour is above the most are dimmed (see dimColour), as they are stored,
///   premultiplied.
class PreparedDeep final : public embedded::DeepSource {
 public:
  /// Reads all samples once, to find the farthest depth and to count. Throws what reading rows
  /// throws.
  PreparedDeep(std::shared_ptr<embedded::DeepSource> source, const PictureFixes& fixes);

  const DD::Image::Format& format() const override { return source_->format(); }
  const DD::Image::Box& box() const override { return source_->box(); }
  const DD::Image::ChannelSet& channels() const override { return source_->channels(); }
  void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
               embedded::DeepRow& row) override;
  void append(DD::Image::Hash& hash) const override;

  /// A line for each fix with the number of samples that it changes.
  std::vector<std::string> notes() const;
  /// The depth that codes for nothing get; nothing if they get none.
  std::optional<float> background() const { return depth_; }

 private:
  struct Counts {
    std::uint64_t samples = 0;
    std::uint64_t background = 0;
    std::uint64_t bright = 0;
  };
  class Mending;

  void findFarthest();
  void countChanges();
  DD::Image::ChannelSet neededFor(const DD::Image::ChannelSet& channels) const;
  Counts mend(const DD::Image::ChannelSet& channels, embedded::DeepRow& row) const;

  std::shared_ptr<embedded::DeepSource> source_;
  PictureFixes fixes_;
  bool colours_;                // fixes ask for them, and the source has all three
  std::optional<float> depth_;  // for what has none
  Counts counts_;
};

}  // namespace drevintool
