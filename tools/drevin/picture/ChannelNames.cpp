#include "picture/ChannelNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "terminal/NearestName.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

struct RgbaName {
  const char* letter;
  const char* word;
};
constexpr std::array<RgbaName, 4> kRgba = {
    {{"r", "red"}, {"g", "green"}, {"b", "blue"}, {"a", "alpha"}}};

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return text;
}

// rgba.<word> for one of the usual spellings of the four colour channels, else empty.
std::string rgbaName(const std::string& channel) {
  const std::string name = lowered(channel);
  for (const RgbaName& entry : kRgba) {
    if (name == entry.letter || name == entry.word) return std::string("rgba.") + entry.word;
  }
  return {};
}

}  // namespace

std::string hostChannelName(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  const bool unlayered = dot == std::string::npos;
  const std::string last = unlayered ? fileName : fileName.substr(dot + 1);
  if (unlayered || fileName.substr(0, dot) == "rgba") {
    std::string rgba = rgbaName(last);
    if (!rgba.empty()) return rgba;
  }
  if (!unlayered) return fileName;
  return fileName == "Z" ? "depth.Z" : "other." + fileName;
}

std::string hostDeepChannelName(const std::string& fileName) {
  if (fileName == "Z") return "deep.front";
  if (fileName == "ZBack") return "deep.back";
  return hostChannelName(fileName);
}

bool isRgb(const std::string& hostName) {
  return hostName == "rgba.red" || hostName == "rgba.green" || hostName == "rgba.blue";
}

ChannelNaming TakenNames::add(const std::string& name, const std::string& part) {
  const std::string free = freeName(name, part);
  const ChannelNaming naming{free, hostChannelName(free)};
  taken_.insert(naming.fileName);
  taken_.insert(naming.hostName);
  return naming;
}

bool TakenNames::isFree(const std::string& name) const {
  return taken_.count(name) == 0 && taken_.count(hostChannelName(name)) == 0;
}

std::string TakenNames::freeName(const std::string& name, const std::string& part) const {
  if (isFree(name)) return name;
  std::string prefixed = part.empty() ? name : part + "." + name;
  if (isFree(prefixed)) return prefixed;
  for (int number = 2;; ++number) {
    std::string numbered = prefixed + "_" + std::to_string(number);
    if (numbered.find('.') == std::string::npos) numbered.insert(0, "other.");
    if (isFree(numbered)) return numbered;
  }
}

bool isRgba(const std::string& hostName) {
  return isRgb(hostName) || hostName == "rgba.alpha";
}

const PictureChannel* findChannel(const Picture& picture, const std::string& name) {
  const auto find = [&](auto&& matches) -> const PictureChannel* {
    const auto found = std::find_if(picture.channels.begin(), picture.channels.end(), matches);
    return found == picture.channels.end() ? nullptr : &*found;
  };
  if (const auto* c = find([&](const PictureChannel& p) { return p.hostName == name; })) return c;
  if (const auto* c = find([&](const PictureChannel& p) { return p.fileName == name; })) return c;
  const std::string canonical = hostChannelName(name);
  return find([&](const PictureChannel& p) { return p.hostName == canonical; });
}

std::string channelList(const Picture& picture) {
  constexpr std::size_t kLongest = 2000;
  if (picture.channels.empty()) return "no channels";
  std::string list;
  for (const PictureChannel& channel : picture.channels) {
    if (list.size() > kLongest) {
      return list + ", ... (" + std::to_string(picture.channels.size()) + " channels)";
    }
    list += (list.empty() ? "" : ", ") + oneLine(channel.fileName);
  }
  return list;
}

std::string channelHint(const Picture& picture, const std::string& name) {
  std::vector<std::string> names;
  for (const PictureChannel& channel : picture.channels)
    names.push_back(channel.fileName);
  for (const PictureChannel& channel : picture.channels)
    names.push_back(channel.hostName);
  return nearestHintAndList(name, names, channelList(picture));
}

std::vector<std::string> splitList(const std::string& text) {
  std::vector<std::string> pieces;
  if (text.empty()) return pieces;
  std::size_t begin = 0;
  while (true) {
    const std::size_t comma = std::min(text.find(',', begin), text.size());
    std::string piece = text.substr(begin, comma - begin);
    const std::size_t first = piece.find_first_not_of(" \t");
    const std::size_t last = piece.find_last_not_of(" \t");
    pieces.push_back(first == std::string::npos ? "" : piece.substr(first, last - first + 1));
    if (comma == text.size()) return pieces;
    begin = comma + 1;
  }
}

}  // namespace drevintool
