/// The picture that is made when the node opens.

#include <algorithm>
#include <memory>

#include "node/Drevin.h"
#include "node/HostConversions.h"
#include "node/HostParallel.h"

namespace drevin {

using DD::Image::Box;
using DD::Image::ChannelSet;

namespace {

dvLineSettings lineSettings(const dvSplatFrame& frame, const std::vector<int>& channels,
                            dvParallel& parallel) {
  dvLineSettings settings;
  settings.splat = frame.splat;
  settings.bank = frame.bank;
  settings.slices = static_cast<std::size_t>(std::max(0, frame.slices));
  settings.channels = channels;
  settings.groups = splatGroups(*frame.bank, frame.splat.chromatic, channels, parallel);
  return settings;
}

dvLineSource linesOf(const dvFlatPlan& plan, const dvLineSettings& settings) {
  dvLineSource source;
  source.firstRow = plan.firstRow;
  source.lastRow = plan.lastRow;
  source.modes = {dvDeepMode::Both};
  source.read = [&plan, &settings](int row) -> dvRowSplats {
    const auto line = std::make_shared<const dvFlatLine>(plan, row);
    return [&plan, &settings, line](int sourceY) {
      std::vector<dvSplatLine> made;
      made.push_back(splatLine(plan, *line, sourceY, settings));
      return made;
    };
  };
  return source;
}

/// Counts in `mergedPixels` what goes through the merge.
dvLineSource linesOf(const dvDeepPlan& plan, const dvLineSettings& settings,
                     std::atomic<std::uint64_t>& mergedPixels) {
  dvLineSource source;
  source.lastRow = plan.formatHeight - 1;
  for (const dvDeepSettings& mode : plan.modes)
    source.modes.push_back(mode.mode);
  source.read = [&](int row) -> dvRowSplats {
    const auto line = std::make_shared<const dvDeepLine>(plan, row);
    mergedPixels += line->mergedPixels();
    if (!line->hasSamples()) return nullptr;
    return [&plan, &settings, line](int sourceY) {
      std::vector<dvSplatLine> made;
      for (std::size_t mode = 0; mode < plan.modes.size(); ++mode)
        made.push_back(splatLine(plan, *line, sourceY, mode, settings));
      return made;
    };
  };
  return source;
}

}  // namespace

void Drevin::preparePicture() {
  picture_.clear();
  mergedPixels_ = 0;
  if (!requestedBox_ || kernelBank_.empty() || openingAborted()) return;
  ChannelSet processed(requestedChannels_);
  processed &= kernelChannels_;
  Box box(*requestedBox_);
  box.intersect(info_);
  const std::vector<int> channels = channelNumbers(processed);
  if (channels.empty()) return;
  progressMessage("Defocus");
  const auto progress = [this](double done) { progressFraction(done); };
  dvHostParallel parallel([this] { return openingAborted(); });
  const dvLineSettings settings = lineSettings(splatFrame(), channels, parallel);
  if (parallel.aborted()) return;
  if (settings_.deepInput) {
    const dvDeepPlan plan = deepPlan(box.x(), box.r(), processed, deepModes());
    if (plan.deep == nullptr) return;
    const dvLineSource source = linesOf(plan, settings, mergedPixels_);
    picture_.make(settings, source, padding_, box, parallel, progress, bandBytes_);
  } else {
    const dvFlatPlan plan = flatPlan(box.x(), box.r(), processed);
    const dvLineSource source = linesOf(plan, settings);
    picture_.make(settings, source, padding_, box, parallel, progress, bandBytes_);
  }
}

}  // namespace drevin
