#include "ExrHeaderScan.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <system_error>

#include "ExitCode.h"
#include "OneLine.h"

namespace drevintool {
namespace {

constexpr std::uint32_t kMagic = 20000630;
constexpr std::uint32_t kTiledFlag = 0x200;
constexpr std::uint32_t kDeepFlag = 0x800;
constexpr std::uint32_t kMultiPartFlag = 0x1000;
constexpr std::size_t kLongestName = 255;
constexpr std::size_t kMostParts = 4096;
constexpr std::size_t kMostChannels = 65536;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw ToolError(ExitCode::InputUnreadable, oneLine(path) + ": " + reason);
}

// Little-endian bytes of the file, each read checked against its end.
class Bytes {
 public:
  explicit Bytes(const std::string& path) : path_(path), file_(nullptr, &std::fclose) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) fail(path, systemText());
    if (S_ISDIR(status.st_mode)) fail(path, "is a directory, not a picture");
    if (!S_ISREG(status.st_mode)) fail(path, "is not a regular file");
    size_ = static_cast<std::uint64_t>(status.st_size);
    file_.reset(std::fopen(path.c_str(), "rbe"));
    if (!file_) fail(path, systemText());
  }

  std::uint64_t size() const { return size_; }
  std::uint64_t left() const { return size_ - at_; }

  std::string take(std::uint64_t count) {
    if (count > left()) fail(path_, "the file ends inside its header");
    std::string bytes(static_cast<std::size_t>(count), '\0');
    if (std::fread(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
      fail(path_, "cannot be read");
    }
    at_ += count;
    return bytes;
  }

  void skip(std::uint64_t count) {
    if (count > left()) fail(path_, "a header attribute is larger than the file");
    if (std::fseek(file_.get(), static_cast<long>(count), SEEK_CUR) != 0) {
      fail(path_, "cannot be read");
    }
    at_ += count;
  }

  std::string name() {
    std::string text;
    for (char c = next(); c != '\0'; c = next()) {
      if (text.size() == kLongestName) fail(path_, "damaged: a header name has no end");
      text += c;
    }
    return text;
  }

  std::uint32_t u32() {
    std::uint32_t value = 0;
    const std::string bytes = take(sizeof value);
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
  }

 private:
  static std::string systemText() { return std::generic_category().message(errno); }

  char next() {
    const int c = left() == 0 ? EOF : std::fgetc(file_.get());
    if (c == EOF) fail(path_, "the file ends inside its header");
    ++at_;
    return static_cast<char>(c);
  }

  std::string path_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::uint64_t size_ = 0;
  std::uint64_t at_ = 0;
};

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
    if (channels.size() == kMostChannels) fail(path, "has too many channels");
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
  if (is("tiles", "tiledesc", 8)) {
    part.tileWidth = static_cast<std::uint32_t>(int32At(bytes, 0));
    part.tileHeight = static_cast<std::uint32_t>(int32At(bytes, 4));
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
ExrPartFacts readPart(Bytes& bytes, const std::string& path, std::string first, ExrPartFacts part) {
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
  Bytes bytes(path);
  ExrFacts facts;
  facts.fileSize = bytes.size();
  if (bytes.size() == 0) fail(path, "is empty");
  if (bytes.size() < 8 || bytes.u32() != kMagic) fail(path, "is not an OpenEXR picture");
  const std::uint32_t version = bytes.u32();
  const bool multiPart = (version & kMultiPartFlag) != 0;
  ExrPartFacts single;
  single.tiled = (version & kTiledFlag) != 0;
  single.deep = (version & kDeepFlag) != 0;
  if (!multiPart) {
    facts.parts.push_back(readPart(bytes, path, bytes.name(), single));
    return facts;
  }
  for (std::string name = bytes.name(); !name.empty(); name = bytes.name()) {
    if (facts.parts.size() == kMostParts) fail(path, "has too many parts");
    facts.parts.push_back(readPart(bytes, path, name, {}));
  }
  return facts;
}

}  // namespace drevintool
