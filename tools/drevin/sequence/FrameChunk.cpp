#include "sequence/FrameChunk.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--chunk " + text + ": " + reason));
}

}  // namespace

FrameChunk FrameChunk::parse(const std::string& text) {
  const std::size_t slash = text.find('/');
  const std::optional<int> number = parseInteger(text.substr(0, slash));
  const std::optional<int> count =
      slash == std::string::npos ? std::nullopt : parseInteger(text.substr(slash + 1));
  if (!number || !count) fail(text, "give which one of how many, such as 3/10");
  if (*count < 1) fail(text, "there is no such chunk; make at least one");
  if (*number < 1 || *number > *count) {
    fail(text, "there is no such chunk; the first is 1, the last " + std::to_string(*count));
  }
  return {*number, *count};
}

std::vector<int> FrameChunk::of(const std::vector<int>& frames) const {
  const auto total = static_cast<std::int64_t>(frames.size());
  if (count > total) {
    fail(std::to_string(number) + "/" + std::to_string(count),
         "--frames has only " + std::to_string(total) + "; make at most as many chunks");
  }
  return {frames.begin() + total * (number - 1) / count, frames.begin() + total * number / count};
}

}  // namespace drevintool
