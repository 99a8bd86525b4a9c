#include "sequence/FramesInFlight.h"

#include <algorithm>

#include "EmbeddedHost/Render.h"

namespace drevintool {

unsigned usefulFramesInFlight(std::int64_t pixels, unsigned threads, std::size_t frames) {
  constexpr std::int64_t kTogether = 1000000;
  constexpr std::int64_t kMost = 8;
  if (pixels <= 0) return 1;
  const std::int64_t most = std::min<std::int64_t>(kMost, std::max(1U, threads));
  const auto useful = std::clamp<std::int64_t>(kTogether / pixels, 1, most);
  return static_cast<unsigned>(std::min<std::uint64_t>(static_cast<std::uint64_t>(useful),
                                                       std::max<std::size_t>(frames, 1)));
}

unsigned chooseFramesInFlight(const RenderArguments& arguments, std::int64_t pixels,
                              unsigned threads, std::size_t frames) {
  if (arguments.framesInFlight != 0) return arguments.framesInFlight;
  if (arguments.maxMemory.bytes != 0) return 1;
  return usefulFramesInFlight(pixels, threads, frames);
}

unsigned threadsOfFrame(unsigned threads, unsigned inFlight, std::size_t frame) {
  const bool oneMore = frame % inFlight < threads % inFlight;
  return std::max(1U, threads / inFlight + (oneMore ? 1U : 0U));
}

void shareThreads(unsigned threads, unsigned inFlight) {
  embedded::setThreadCount(threadsOfFrame(threads, inFlight, 0));
}

}  // namespace drevintool
