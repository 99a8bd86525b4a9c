#include "picture/FlatChunks.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "picture/ExrChunks.h"
#include "picture/ExrLimits.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

// First byte of a block's content and the one behind its last.
using Extent = std::pair<std::uint64_t, std::uint64_t>;

Extent checkedExtent(ExrChunks& chunks, std::size_t block) {
  const ChunkPlace place = chunks.enter(block, sizeof(std::int32_t));
  const auto sampleBytes = static_cast<std::uint64_t>(bytesOfPixel(chunks.part()));
  const std::int32_t packed = chunks.bytes().i32();
  if (packed < 0 || static_cast<std::uint64_t>(packed) > chunks.bytes().left()) {
    chunks.failBlock(block, "ends outside the file: damaged or unfinished");
  }
  const auto size = static_cast<std::uint64_t>(packed);
  const std::uint64_t ratio = mostCompression(chunks.part().compression);
  // What does not get smaller is stored as it is.
  if (size == 0 || place.pixels * sampleBytes / ratio > size ||
      size > place.fullPixels * sampleBytes) {
    chunks.failBlock(block, "is damaged: it has not the size of its pixels");
  }
  return {chunks.bytes().position(), chunks.bytes().position() + size};
}

}  // namespace

void checkFlatChunks(const std::string& path, const ExrFacts& facts) {
  std::vector<Extent> extents;
  for (std::size_t part = 0; part < facts.parts.size(); ++part) {
    if (facts.parts[part].deep) continue;
    ExrChunks chunks(path, facts, part);
    extents.reserve(extents.size() + chunks.size());
    for (std::size_t block = 0; block < chunks.size(); ++block)
      extents.push_back(checkedExtent(chunks, block));
  }
  std::sort(extents.begin(), extents.end());
  const auto shared =
      std::adjacent_find(extents.begin(), extents.end(),
                         [](const Extent& a, const Extent& b) { return b.first < a.second; });
  if (shared == extents.end()) return;
  throw ToolError(ExitCode::InputUnreadable,
                  oneLine(path) + ": damaged: two of its blocks lie in the same bytes");
}

}  // namespace drevintool
