#include "picture/ExrHeaderScan.h"

#include <array>
#include <cstring>
#include <utility>

#include "picture/FileBytes.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr std::uint32_t kMagic = 20000630;
constexpr std::uint32_t kTiledFlag = 0x200;
constexpr std::uint32_t kDeepFlag = 0x800;
constexpr std::uint32_t kMultiPartFlag = 0x1000;
constexpr std::size_t kMostParts = 4096;
constexpr std::size_t kMostChannels = 65536;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw ToolError(ExitCode::InputUnreadable, oneLine(path) + ": " + reason);
}

std::int32_t int32At(const std::string& bytes, std::size_t offset) {
  std::int32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

ExrWindow windowOf(const std::string& bytes) {
  return {int32At(bytes, 0), int32At(bytes, 4), int32At(bytes, 8), int32At(bytes, 12)};
}

// Each entry: name, 0, type (4), linearity and padding (4), x and y sampling (4 each); ends in 0.
std::vector<ExrChannelFacts> channelsOf(const std::string& bytes, const std::string& path) {
  constexpr std::size_t kFixed = 16;
  std::vector<ExrChannelFacts> channels;
  std::size_t at = 0;
  while (at < bytes.size() && bytes[at] != '\0') {
    const std::size_t end = bytes.find('\0', at);
    if (end == std::string::npos || bytes.size() - end - 1 < kFixed) {
      fail(path, "damaged: the channel list has no end");
    }
    if (channels.size() == kMostChannels)
      fail(path, "has more than the most channels, " + std::to_string(kMostChannels));
    channels.push_back({bytes.substr(at, end - at), int32At(bytes, end + 1),
                        int32At(bytes, end + 9), int32At(bytes, end + 13)});
    at = end + 1 + kFixed;
  }
  return channels;
}

struct Attribute {
  std::string name;
  std::string type;
  std::string bytes;
};

// Takes the attributes that matter, each only under its own type; the others keep their defaults.
void note(const Attribute& attribute, const std::string& path, ExrPartFacts& part) {
  const std::string& bytes = attribute.bytes;
  const auto is = [&](const char* name, const char* type, std::size_t size) {
    return attribute.name == name && attribute.type == type && bytes.size() >= size;
  };
  if (is("dataWindow", "box2i", 16)) part.dataWindow = windowOf(bytes);
  if (is("displayWindow", "box2i", 16)) part.displayWindow = windowOf(bytes);
  if (is("channels", "chlist", 1)) part.channels = channelsOf(bytes, path);
  if (is("compression", "compression", 1)) part.compression = static_cast<unsigned char>(bytes[0]);
  if (is("chunkCount", "int", 4)) part.chunkCount = int32At(bytes, 0);
  if (is("name", "string", 0)) part.name = bytes;
  if (is("view", "string", 0)) part.view = bytes;
  if (is("tiles", "tiledesc", 9)) {
    part.tileWidth = static_cast<std::uint32_t>(int32At(bytes, 0));
    part.tileHeight = static_cast<std::uint32_t>(int32At(bytes, 4));
    part.severalLevels = (static_cast<unsigned char>(bytes[8]) & 0xFU) != 0;
  }
  if (is("type", "string", 0)) {
    part.deep = bytes == "deepscanline" || bytes == "deeptile";
    part.tiled = bytes == "tiledimage" || bytes == "deeptile";
  }
}

bool wanted(const std::string& name) {
  static const std::array<const char*, 9> kWanted = {"dataWindow",  "displayWindow", "channels",
                                                     "compression", "chunkCount",    "name",
                                                     "view",        "tiles",         "type"};
  for (const char* entry : kWanted) {
    if (name == entry) return true;
  }
  return false;
}

// The attributes of one part after its first name; `first` is that name.
ExrPartFacts readPart(FileBytes& bytes, const std::string& path, std::string first,
                      ExrPartFacts part) {
  for (std::string name = std::move(first); !name.empty(); name = bytes.name()) {
    const std::string type = bytes.name();
    const std::uint32_t size = bytes.u32();
    if (size > bytes.left()) fail(path, "damaged: a header attribute is larger than the file");
    if (wanted(name)) {
      note({name, type, bytes.take(size)}, path, part);
    } else {
      bytes.skip(size);
    }
  }
  return part;
}

}  // namespace

ExrFacts scanExrHeader(const std::string& path) {
  FileBytes bytes(path);
  ExrFacts facts;
  facts.fileSize = bytes.size();
  if (bytes.size() == 0) fail(path, "is empty");
  if (bytes.size() < 8 || bytes.u32() != kMagic) fail(path, "is not an OpenEXR picture");
  const std::uint32_t version = bytes.u32();
  facts.multiPart = (version & kMultiPartFlag) != 0;
  ExrPartFacts single;
  single.tiled = (version & kTiledFlag) != 0;
  single.deep = (version & kDeepFlag) != 0;
  if (!facts.multiPart) {
    facts.parts.push_back(readPart(bytes, path, bytes.name(), single));
    facts.headersEnd = bytes.position();
    return facts;
  }
  for (std::string name = bytes.name(); !name.empty(); name = bytes.name()) {
    if (facts.parts.size() == kMostParts)
      fail(path, "has more than the most parts, " + std::to_string(kMostParts));
    facts.parts.push_back(readPart(bytes, path, name, {}));
  }
  facts.headersEnd = bytes.position();
  return facts;
}

}  // namespace drevintool
