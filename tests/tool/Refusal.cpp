#include "Refusal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBefore = "the picture from before";

fs::path outputOf(const std::vector<std::string>& arguments) {
  const auto option = std::find(arguments.begin(), arguments.end(), "--output");
  return option == arguments.end() ? fs::path() : fs::path(*(option + 1));
}

// Names in the folder, hidden ones included, except the output's own.
std::vector<std::string> companions(const fs::path& output) {
  std::vector<std::string> names;
  std::error_code none;
  for (fs::directory_iterator entry(output.parent_path(), none); entry != fs::directory_iterator();
       ++entry) {
    if (entry->path() != output) names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void expectOneLine(const RunResult& result, const std::vector<std::string>& pieces) {
  EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  for (const std::string& piece : pieces)
    EXPECT_NE(result.error.find(piece), std::string::npos) << piece << " in " << result.error;
  EXPECT_EQ(result.out, "");
}

}  // namespace

void expectRefused(const std::vector<std::string>& arguments, int code,
                   const std::vector<std::string>& pieces, const RunOptions& options) {
  const fs::path output = outputOf(arguments);
  ASSERT_FALSE(output.empty());
  const std::vector<std::string> before = companions(output);
  for (const bool earlier : {false, true}) {
    if (earlier && !fs::is_directory(output.parent_path())) continue;
    fs::remove(output);
    if (earlier) writeBytes(output.string(), kBefore);
    const RunResult result = runCommand(arguments, options);
    EXPECT_EQ(result.exitCode, code) << result.error;
    expectOneLine(result, pieces);
    EXPECT_EQ(fs::exists(output), earlier);
    EXPECT_TRUE(bytesOfFile(output.string()) == (earlier ? kBefore : ""));
    EXPECT_EQ(companions(output), before);
  }
  fs::remove(output);
}

}  // namespace drevintool::testing
