#include "picture/WrittenFile.h"

#include <algorithm>
#include <cstdint>

#include "picture/ExrHeaderScan.h"
#include "picture/ExrLimits.h"
#include "picture/FileBytes.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

constexpr std::uint64_t kTableEntryBytes = 8;

// Walks over the blocks of a part's table. FileBytes throws where the file ends too early.
class BlockWalk {
 public:
  BlockWalk(const std::string& file, const ExrFacts& facts)
      : bytes_(file), facts_(facts), part_(facts.parts.front()) {}

  std::string fault() {
    const auto blocks = static_cast<std::uint64_t>(chunksOf(part_));
    const std::uint64_t tableEnd = facts_.headersEnd + blocks * kTableEntryBytes;
    std::uint64_t last = tableEnd;
    for (std::uint64_t block = 0; block < blocks; ++block) {
      bytes_.seek(facts_.headersEnd + block * kTableEntryBytes);
      const std::uint64_t offset = bytes_.u64();
      if (offset < tableEnd || offset >= bytes_.size()) return text(block, "is missing");
      bytes_.seek(offset);
      if (bytes_.i32() != firstRow(block)) return text(block, "stands for other rows");
      const std::uint64_t size = part_.deep ? deepSize() : static_cast<std::uint32_t>(bytes_.i32());
      if (size > bytes_.left()) return text(block, "is cut off");
      last = std::max(last, bytes_.position() + size);
    }
    return last == bytes_.size() ? "" : "bytes are left over behind its last block";
  }

 private:
  std::int64_t firstRow(std::uint64_t block) const {
    return part_.dataWindow.minY + static_cast<std::int64_t>(block) * rowsOfChunk(part_);
  }

  // Of the sample counts and the samples; what they unpack to is no matter here.
  std::uint64_t deepSize() {
    const std::uint64_t counts = bytes_.u64();
    const std::uint64_t samples = bytes_.u64();
    bytes_.u64();
    return std::max({counts, samples, counts + samples});
  }

  static std::string text(std::uint64_t block, const std::string& fault) {
    return "block " + std::to_string(block + 1) + " " + fault;
  }

  FileBytes bytes_;
  const ExrFacts& facts_;
  const ExrPartFacts& part_;
};

// Lengths stand with the highest byte first.
std::uint64_t pngLength(FileBytes& bytes) {
  std::uint64_t length = 0;
  for (const char byte : bytes.take(4))
    length = length << 8 | static_cast<unsigned char>(byte);
  return length;
}

std::string faultOfChunks(FileBytes& bytes) {
  constexpr std::uint64_t kChecksumBytes = 4;
  const std::string signature("\x89PNG\r\n\x1a\n", 8);
  if (bytes.take(signature.size()) != signature) return "its signature is wrong";
  while (true) {
    const std::uint64_t length = pngLength(bytes);
    const bool last = bytes.take(4) == "IEND";
    bytes.skip(length + kChecksumBytes);
    if (last) return bytes.left() == 0 ? "" : "bytes are left over behind its end";
  }
}

}  // namespace

std::string faultOfWrittenExr(const std::string& file) {
  try {
    const ExrFacts facts = scanExrHeader(file);
    return BlockWalk(file, facts).fault();
  } catch (const ToolError&) {
    return "it ends too early";
  }
}

std::string faultOfWrittenPng(const std::string& file) {
  try {
    FileBytes bytes(file);
    return faultOfChunks(bytes);
  } catch (const ToolError&) {
    return "it ends too early";
  }
}

}  // namespace drevintool
