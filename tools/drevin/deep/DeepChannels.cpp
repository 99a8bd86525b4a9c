#include "deep/DeepChannels.h"

#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Channel;

std::string nameList(const ExrPartFacts& part) {
  constexpr std::size_t kLongest = 2000;
  std::string list;
  for (const ExrChannelFacts& channel : part.channels) {
    if (list.size() > kLongest) return list + ", ...";
    list += (list.empty() ? "" : ", ") + channel.name;
  }
  return list;
}

}  // namespace

DeepChannels planDeepChannels(const ExrPartFacts& part, const std::string& path) {
  DeepChannels channels;
  for (const ExrChannelFacts& channel : part.channels) {
    const Channel number = DD::Image::getChannel(hostDeepChannelName(channel.name).c_str());
    if (number == DD::Image::Chan_Black || channels.served.contains(number)) continue;
    channels.stored.push_back({channel.name, number});
    channels.served += number;
  }
  if (!channels.served.contains(Chan_DeepFront)) {
    throw ToolError(
        ExitCode::InputUnreadable,
        oneLine(path + ": its deep image has no depth channel Z; it has " + nameList(part)));
  }
  channels.hasBack = channels.served.contains(Chan_DeepBack);
  channels.hasAlpha = channels.served.contains(Chan_Alpha);
  channels.served += Chan_DeepBack;
  channels.served += Chan_Alpha;
  return channels;
}

}  // namespace drevintool
