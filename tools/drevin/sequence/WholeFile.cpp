#include "sequence/WholeFile.h"

#include <cctype>
#include <filesystem>
#include <limits>
#include <system_error>

#include "picture/ExrHeaderScan.h"
#include "picture/ExrLimits.h"
#include "picture/WrittenFile.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

// Sizes are checked first: anything may lie where a result is to be.
bool isWholeExr(const std::string& path) {
  try {
    const ExrFacts facts = scanExrHeader(path);
    checkExrLimits(facts, path, {std::numeric_limits<std::uint64_t>::max(), {}, {}, 0});
    if (facts.parts.size() != 1 || facts.parts.front().tiled) return false;
  } catch (const ToolError&) {
    return false;
  }
  return faultOfWrittenExr(path).empty();
}

}  // namespace

bool isWholePicture(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  const bool png = !path.empty() && std::tolower(static_cast<unsigned char>(path.back())) == 'g';
  return png ? faultOfWrittenPng(path).empty() : isWholeExr(path);
}

}  // namespace drevintool
