#include "depth/DepthChoice.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

#include "DDImage/Channel.h"
#include "picture/ChannelNames.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool {
namespace {

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return text;
}

bool isNamedDepth(const std::string& hostName) {
  constexpr std::array<const char*, 6> kNames = {"z",        "depth", "zdepth",
                                                 "distance", "dist",  "zbuffer"};
  const std::string name = lowered(hostName);
  const std::size_t dot = name.rfind('.');
  const std::string last = name.substr(dot + 1);
  const bool known =
      std::any_of(kNames.begin(), kNames.end(), [&](const char* entry) { return last == entry; });
  return known || (dot != std::string::npos && name.rfind("depth", 0) == 0);
}

bool isPartOfVector(const Picture& picture, const std::string& hostName) {
  const std::string layer = lowered(hostName.substr(0, hostName.rfind('.') + 1));
  return std::any_of(
      picture.channels.begin(), picture.channels.end(),
      [&](const PictureChannel& channel) { return lowered(channel.hostName) == layer + "x"; });
}

const PictureChannel* channelWithHostName(const Picture& picture, const std::string& name) {
  const auto same = [&](const PictureChannel& channel) { return channel.hostName == name; };
  const auto found = std::find_if(picture.channels.begin(), picture.channels.end(), same);
  return found == picture.channels.end() ? nullptr : &*found;
}

}  // namespace

const PictureChannel* chosenDepth(const Picture& picture, const Node& node) {
  const DD::Image::Knob* knob = node.knob("depthChannel");
  if (knob == nullptr || knob->channel() == DD::Image::Chan_Black) return nullptr;
  return channelWithHostName(picture, DD::Image::getName(knob->channel()));
}

const PictureChannel* usualDepth(const Picture& picture) {
  return channelWithHostName(picture, "depth.Z");
}

std::vector<const PictureChannel*> possibleDepths(const Picture& picture) {
  std::vector<const PictureChannel*> depths;
  for (const PictureChannel& channel : picture.channels) {
    const bool named = !channel.isUint() && isNamedDepth(channel.hostName);
    if (named && !isPartOfVector(picture, channel.hostName)) depths.push_back(&channel);
  }
  return depths;
}

std::vector<std::string> depthNamesOf(const std::string& path) {
  constexpr int kUint = 0;
  Picture picture;
  TakenNames taken;
  std::vector<std::string> names;
  for (const ExrPartFacts& part : scanExrHeader(path).parts) {
    if (part.deep && names.empty()) names = {"deep.front", "deep.back"};
    for (const ExrChannelFacts& channel : part.channels) {
      if (part.deep) continue;
      const ChannelNaming naming = taken.add(channel.name, part.name);
      const Samples none = channel.type == kUint ? Samples(UintSamples()) : Samples(FloatSamples());
      picture.channels.push_back({naming.fileName, naming.hostName, none});
    }
  }
  for (const PictureChannel* depth : possibleDepths(picture))
    names.push_back(depth->fileName);
  return names;
}

}  // namespace drevintool
