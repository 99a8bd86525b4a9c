#include "render/FrameStats.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "picture/MemoryBudget.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

std::string word(const std::string& name) {
  std::string text = oneLine(name);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == ' ' || c == '='; }, '_');
  return text;
}

std::string rangeText(const ValueRange& range) {
  if (!range.anyFinite()) return "none";
  return numberText(range.least) + ".." + numberText(range.most);
}

std::uint64_t notFiniteOut(const FrameStats& stats) {
  std::uint64_t count = 0;
  for (const ChannelStats& channel : stats.channels)
    count += channel.range.nan + channel.range.infinite;
  return count;
}

}  // namespace

FrameStats statsOf(const OutputPicture& output, const std::vector<PlannedChannel>& plan) {
  FrameStats stats;
  stats.pixels = output.box.area();
  for (const OutputChannel& channel : output.channels) {
    const auto made = [&](const PlannedChannel& planned) {
      return planned.rendered && planned.hostName == channel.hostName;
    };
    if (std::none_of(plan.begin(), plan.end(), made)) continue;
    stats.channels.push_back({channel.fileName, rangeOf(channel.samples, output.box, output.box)});
  }
  return stats;
}

Json statsJson(const FrameStats& stats) {
  Json json;
  json["pixels"] = stats.pixels;
  json["samples"] = stats.samples ? Json(*stats.samples) : Json();
  json["notFinite"] = stats.notFinite;
  json["bytesWritten"] = stats.bytesWritten ? Json(*stats.bytesWritten) : Json();
  json["channels"] = Json::object();
  for (const ChannelStats& channel : stats.channels)
    json["channels"][channel.name] = rangeJson(channel.range);
  return json;
}

std::string statsLine(const FrameTask& task, const FrameStats& stats, const CommandTimes& times) {
  std::string line;
  if (task.frame) line += fmt::format("frame={} ", *task.frame);
  if (!task.view.empty()) line += "view=" + word(task.view) + " ";
  line +=
      fmt::format("read={:.3f} render={:.3f} write={:.3f} total={:.3f}", times.read,
                  std::max(0.0, times.total - times.read - times.write), times.write, times.total);
  line += fmt::format(" peakMemory={} pixels={}", peakMemoryBytes(), stats.pixels);
  if (stats.samples) line += fmt::format(" samples={}", *stats.samples);
  line += fmt::format(" notFinite={} notFiniteOut={} bytes={}", stats.notFinite,
                      notFiniteOut(stats), stats.bytesWritten.value_or(0));
  for (const ChannelStats& channel : stats.channels)
    line += " " + word(channel.name) + "=" + rangeText(channel.range);
  return line;
}

}  // namespace drevintool
