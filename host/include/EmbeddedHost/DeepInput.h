#pragma once

/// Deep pictures as inputs of a node.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "DDImage/DeepOp.h"

namespace embedded {

/// Samples of some columns of one row: pixel by pixel from the left, each pixel's samples nearest
/// first, each sample with one float per channel in ascending order of the channels.
struct DeepRow {
  std::vector<std::uint32_t> counts;  ///< samples of each column
  std::vector<float> values;

  void clear() {
    counts.clear();
    values.clear();
  }
};

/// Sorts `count` samples of `channels` floats each nearest first: by the front, ties by the back,
/// further ties as they stand. NaN counts as infinitely far.
DD_EXPORT void sortNearestFirst(float* values, std::size_t count, std::size_t channels,
                                std::size_t frontPlace, std::size_t backPlace);

/// Where a deep input takes its samples from.
class DD_EXPORT DeepSource {
 public:
  virtual ~DeepSource();

  virtual const DD::Image::Format& format() const = 0;
  /// Where it has pixels; everywhere else there are no samples.
  virtual const DD::Image::Box& box() const = 0;
  /// Among them the front and the back.
  virtual const DD::Image::ChannelSet& channels() const = 0;
  /// Replaces `row` by columns [x, r) of row y, all inside box(), for `channels`, all of them its
  /// own. Called by many threads at once. What it throws becomes an error of the operator; its
  /// text is to be one line.
  virtual void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
                       DeepRow& row) = 0;
  /// Adds what tells this picture from others.
  virtual void append(DD::Image::Hash& hash) const = 0;
};

/// A deep picture in memory.
class DD_EXPORT DeepImage : public DeepSource {
 public:
  /// Without samples. `channels` must have the front and the back; else it throws
  /// std::invalid_argument.
  DeepImage(const DD::Image::Format& format, const DD::Image::Box& box,
            const DD::Image::ChannelSet& channels);

  /// Gives a pixel of the box its samples, in any order; throws std::invalid_argument if their
  /// number of floats is no multiple of the number of channels, or if the pixel is outside.
  void setPixel(int x, int y, std::vector<float> samples);

  const DD::Image::Format& format() const override { return format_; }
  const DD::Image::Box& box() const override { return box_; }
  const DD::Image::ChannelSet& channels() const override { return channels_; }
  void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels, DeepRow& row) override;
  void append(DD::Image::Hash& hash) const override;

 private:
  DD::Image::Format format_;
  DD::Image::Box box_;
  DD::Image::ChannelSet channels_;
  DD::Image::ChannelMap map_;
  std::vector<std::vector<float>> pixels_;  ///< row by row
};

/// Serves a deep source as an operator. Planes cover the whole box that is asked for: pixels
/// outside the source's box are empty. Samples lie in the host's depth order; of samples at the
/// same front and back the first of the source comes first in either order.
class DD_EXPORT DeepInput : public DD::Image::DeepOnlyOp {
 public:
  explicit DeepInput(std::shared_ptr<DeepSource> source);
  ~DeepInput() override;

  const char* Class() const override;
  const char* node_help() const override;
  void append(DD::Image::Hash& hash) override;

 protected:
  void _validate(bool forReal) override;
  bool doDeepEngine(DD::Image::Box box, const DD::Image::ChannelSet& channels,
                    DD::Image::DeepOutputPlane& plane) override;
  void getDeepRequests(DD::Image::Box box, const DD::Image::ChannelSet& channels, int count,
                       std::vector<DD::Image::RequestData>& requests) override;

 private:
  std::shared_ptr<DeepSource> source_;
};

}  // namespace embedded
