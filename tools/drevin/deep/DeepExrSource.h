#pragma once

/// A deep OpenEXR picture as the host's deep input, read while it is rendered.

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "deep/DeepBandCache.h"
#include "deep/DeepBandPlan.h"
#include "deep/DeepBandReader.h"
#include "deep/DeepChannels.h"
#include "picture/ExrHeaderScan.h"
#include "picture/Picture.h"

namespace drevintool {

/// Row 0 is the bottom row of the part's display window, column 0 its left column. Bands of rows
/// are read when a row of theirs is asked for; a few of them stay in memory, for all threads. The
/// first failure to read rows is remembered, and every later row fails with its text.
class DeepExrSource : public embedded::DeepSource {
 public:
  /// Opens the first deep part, of that name and of that view where they are not empty, and checks
  /// all its blocks, but reads no samples. Throws ToolError (InputUnreadable) with one line that
  /// names the file.
  DeepExrSource(const std::string& path, const std::string& partName, const std::string& view);

  const DD::Image::Format& format() const override { return format_; }
  const DD::Image::Box& box() const override { return box_; }
  const DD::Image::ChannelSet& channels() const override { return channels_.served; }
  void readRow(int y, int x, int r, const DD::Image::ChannelSet& channels,
               embedded::DeepRow& row) override;
  /// Adds the file by its path, size and time of change, and the part.
  void append(DD::Image::Hash& hash) const override;

  const std::string& path() const { return path_; }
  /// Of the part; empty if it has none.
  const std::string& partName() const { return facts_.name; }
  const DisplayWindow& display() const { return display_; }
  std::shared_ptr<const HeaderAttributes> attributes() const { return attributes_; }
  bool hasAlpha() const { return channels_.hasAlpha; }
  /// The channel of the file that this one is read from, or null if it is made.
  const ExrChannelFacts* storedChannel(DD::Image::Channel channel) const;
  /// Of the bands that were read so far, each counted once.
  DeepSampleCounts counts() const;
  /// How often a band was read; more often than there are bands where they did not stay in memory.
  std::uint64_t bandReads() const;
  /// The line of the first failure to read rows.
  std::optional<std::string> failure() const;

 private:
  std::shared_ptr<const DeepBand> bandWith(int fileRow, const DD::Image::ChannelSet& channels);
  std::shared_ptr<const DeepBand> readBand(std::size_t number);
  void count(std::size_t number, const DeepBand& band);

  std::string path_;
  std::size_t part_ = 0;
  ExrPartFacts facts_;
  DeepChannels channels_;
  DisplayWindow display_;
  DD::Image::Format format_;
  DD::Image::Box box_;
  std::shared_ptr<const HeaderAttributes> attributes_;
  std::unique_ptr<const DeepBandPlan> plan_;

  mutable std::mutex mutex_;  // guards what follows
  std::unique_ptr<DeepBandReader> reader_;
  std::unique_ptr<DeepBandCache> cache_;
  DD::Image::ChannelSet wanted_;  // all that were asked for so far
  std::vector<bool> counted_;
  std::vector<std::uint64_t> notFinite_;  // samples of each band
  DeepSampleCounts counts_;
  std::uint64_t bandReads_ = 0;
  std::optional<std::string> failure_;
};

}  // namespace drevintool
