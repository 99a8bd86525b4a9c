#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

// In a mount space of its own, so that no disk outlives the script.
RunResult runScript(const std::string& script, const std::vector<std::string>& more) {
  RunOptions options;
  options.command = "/usr/bin/unshare";
  std::vector<std::string> arguments = {"-rm", "/bin/sh", "-c", script, "sh"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runCommand(arguments, options);
}

// For each size of a disk a line: the exit code, the bytes at the output's place afterwards, the
// number of files, and what was said.
constexpr const char* kScript = R"(
folder=$1; output=$1/$2; shift 2
for pages in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16; do
  mount -t tmpfs -o size=$((pages * 4))k tmpfs "$folder" || exit 1
  echo old > "$output"
  said=$("$@" --output "$output" 2>&1)
  echo "$? $(wc -c < "$output") $(ls -A "$folder" | wc -l) $said"
  umount "$folder"
done
)";

struct Outcome {
  int code = -1;
  std::size_t bytes = 0;
  int files = 0;
  std::string said;
};

std::vector<Outcome> outcomesOf(const std::string& text) {
  std::vector<Outcome> outcomes;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    Outcome outcome;
    words >> outcome.code >> outcome.bytes >> outcome.files >> std::ws;
    std::getline(words, outcome.said);
    outcomes.push_back(outcome);
  }
  return outcomes;
}

class FullDisk : public ::testing::Test {
 protected:
  // About 50 kB, so that some of the disks hold it.
  FullDisk() {
    PartFixture part = rgbazPart(64, 64, 100.0);
    for (ChannelFixture& channel : part.channels) {
      if (channel.name != "Z" && channel.name != "A") channel.value = noise;
    }
    writeExrFixture(input_, part);
    std::filesystem::create_directory(disk_);
  }

  static double noise(int x, int y) {
    const unsigned bits = static_cast<unsigned>(x + 64 * y) * 2654435761U;
    return ((bits ^ (bits >> 15)) * 2246822519U >> 8) / 16777216.0;
  }

  bool canMount() const {
    return runScript("mount -t tmpfs -o size=64k tmpfs \"$1\"", {disk_}).exitCode == 0;
  }

  // A disk that is too small leaves the old file; one that is not, the same new file each time.
  void expectAllOrNothing(const std::string& name) const {
    const RunResult result = runScript(kScript, {disk_, name, DREVIN_COMMAND, "render", "--quiet",
                                                 "--plugin", builtPlugin(), "--input", input_});
    const std::vector<Outcome> outcomes = outcomesOf(result.out);
    ASSERT_EQ(outcomes.size(), 16U) << result.error;
    EXPECT_EQ(outcomes.front().code, 4);
    ASSERT_EQ(outcomes.back().code, 0) << outcomes.back().said;
    for (const Outcome& outcome : outcomes) {
      const bool done = outcome.code == 0;
      EXPECT_TRUE(done || outcome.code == 4) << outcome.code;
      EXPECT_EQ(outcome.bytes, done ? outcomes.back().bytes : 4U);
      EXPECT_EQ(outcome.files, 1);
      EXPECT_EQ(outcome.said,
                done ? "" : "drevin: error: " + disk_ + "/" + name + ": No space left on device");
    }
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string disk_ = folder_.file("disk");
};

TEST_F(FullDisk, exr_isWholeOrTheOldOneStands) {
  if (!canMount()) GTEST_SKIP() << "small disks cannot be mounted here";
  expectAllOrNothing("out.exr");
}

TEST_F(FullDisk, png_isWholeOrTheOldOneStands) {
  if (!canMount()) GTEST_SKIP() << "small disks cannot be mounted here";
  expectAllOrNothing("out.png");
}

}  // namespace
}  // namespace drevintool::testing
