#include "render/FrameStats.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;
using Words = std::map<std::string, std::string>;

// The words of a line of figures.
Words wordsOf(const std::string& line) {
  Words words;
  std::istringstream stream(line);
  for (std::string word; stream >> word;) {
    const std::size_t equals = word.find('=');
    if (equals != std::string::npos) words[word.substr(0, equals)] = word.substr(equals + 1);
  }
  return words;
}

OutputChannel channelOf(const std::string& name, const std::string& hostName,
                        const std::vector<float>& values) {
  return {name, hostName, std::make_shared<const std::vector<float>>(values)};
}

TEST(FrameStats, channels_areThoseThatTheNodeMade) {
  OutputPicture output;
  output.box = {0, 0, 2, 1};
  output.channels = {channelOf("R", "rgba.red", {-0.5F, 1.5F}),
                     channelOf("Z", "depth.Z", {1.0F, 2.0F})};
  const FrameStats stats =
      statsOf(output, {{"R", "rgba.red", nullptr, true}, {"Z", "depth.Z", nullptr, false}});
  EXPECT_EQ(stats.pixels, 2U);
  ASSERT_EQ(stats.channels.size(), 1U);
  EXPECT_EQ(stats.channels[0].name, "R");
  EXPECT_EQ(stats.channels[0].range.least, -0.5);
  EXPECT_EQ(stats.channels[0].range.most, 1.5);
}

TEST(FrameStats, line_hasNameAndValueByBlanks) {
  FrameStats stats;
  stats.pixels = 6;
  stats.samples = 70;
  stats.notFinite = 2;
  stats.bytesWritten = 1234;
  ValueRange range;
  range.add(0.1F);
  range.add(std::numeric_limits<double>::quiet_NaN());
  stats.channels = {{"R", range}, {"a b=c", ValueRange()}};
  const std::string line = statsLine({12, "left"}, stats, {0.25, 0.5, 2.0});
  EXPECT_EQ(line.rfind("frame=12 view=left read=0.250 render=1.250 write=0.500 total=2.000 ", 0),
            0U)
      << line;
  EXPECT_NE(line.find(" pixels=6 samples=70 notFinite=2 notFiniteOut=1 bytes=1234 R=0.1..0.1 "
                      "a_b_c=none"),
            std::string::npos)
      << line;
  EXPECT_GT(std::stoull(wordsOf(line)["peakMemory"]), 1000000U);
}

TEST(FrameStats, pictureOfNoSequence_hasNoFrame) {
  const std::string line = statsLine({}, FrameStats(), {});
  EXPECT_EQ(line.rfind("read=0.000", 0), 0U) << line;
  EXPECT_EQ(line.find("samples="), std::string::npos);
}

class StatsOption : public ::testing::Test {
 protected:
  StatsOption() {
    PartFixture part = rgbazPart(16, 12, 110.0);
    part.channels[0].value = [](int x, int) { return x / 16.0; };
    writeExrFixture(input_, part);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(StatsOption, line_isThatOfTheFile) {
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--stats", "--set", "multiplier=5"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const std::vector<std::string> lines = linesStarting(result.error, "drevin: stats: ");
  ASSERT_EQ(lines.size(), 1U) << result.error;
  Words words = wordsOf(lines.front());
  EXPECT_EQ(words["pixels"], "192");
  EXPECT_EQ(words["notFinite"], "0");
  EXPECT_EQ(words["bytes"], std::to_string(std::filesystem::file_size(output_)));
  EXPECT_EQ(words.count("Z"), 0U) << "is passed on";
  const ReadFile file = readBack(output_);
  double least = 1.0;
  double most = 0.0;
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 16; ++x) {
      least = std::min(least, file.value("R", x, y));
      most = std::max(most, file.value("R", x, y));
    }
  }
  const std::size_t dots = words["R"].find("..");
  EXPECT_FLOAT_EQ(std::stof(words["R"].substr(0, dots)), static_cast<float>(least));
  EXPECT_FLOAT_EQ(std::stof(words["R"].substr(dots + 2)), static_cast<float>(most));
}

TEST_F(StatsOption, withoutIt_nothingIsSaid) {
  EXPECT_EQ(runCommand(renderArguments(input_, output_)).error, "");
}

TEST_F(StatsOption, sequence_hasALineForEachFrameThatWasRendered) {
  const std::vector<std::string> more = {"--frames",           "1-3", "--stats", "--skip-existing",
                                         "--frames-in-flight", "1"};
  const std::string pattern = folder_.file("out.####.exr");
  EXPECT_EQ(runCommand(renderArguments(input_, folder_.file("out.0002.exr"))).exitCode, 0);
  const RunResult result = runCommand(renderArguments(input_, pattern, more));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const std::vector<std::string> lines = linesStarting(result.error, "drevin: stats: ");
  ASSERT_EQ(lines.size(), 2U) << result.error;
  EXPECT_EQ(wordsOf(lines[0])["frame"] + wordsOf(lines[1])["frame"], "13");
}

TEST_F(StatsOption, report_hasTheSameFigures) {
  const std::string report = folder_.file("r.json");
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--report", report, "--set", "multiplier=5"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const json stats = json::parse(bytesOfFile(report))["stats"];
  EXPECT_EQ(stats["pixels"], 192);
  EXPECT_TRUE(stats["samples"].is_null());
  EXPECT_EQ(stats["bytesWritten"], std::filesystem::file_size(output_));
  EXPECT_EQ(stats["channels"].size(), 4U);
  EXPECT_EQ(stats["channels"]["R"]["nan"], 0);
}

TEST_F(StatsOption, valuesThatAreNotFinite_areCounted) {
  PartFixture part = rgbazPart(16, 12, 110.0);
  part.channels[0].value = [](int x, int y) {
    return x == 3 && y == 4 ? std::numeric_limits<double>::quiet_NaN() : 0.5;
  };
  writeExrFixture(input_, part);
  const RunResult result = runCommand(renderArguments(
      input_, output_, {"--stats", "--set", "focalPlane=110", "--set", "focusRegionSize=200"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  Words words = wordsOf(linesStarting(result.error, "drevin: stats: ").at(0));
  EXPECT_EQ(words["notFinite"], "1");
  EXPECT_EQ(words["notFiniteOut"], "1") << "in focus it reaches itself alone";
}

TEST_F(StatsOption, deepPicture_tellsItsSamples) {
  writeDeepFixture(input_, {opaqueDeepPart(8, 6, 110.0)});
  const RunResult result = runCommand(deepArguments(input_, output_, {"--stats"}));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  Words words = wordsOf(linesStarting(result.error, "drevin: stats: ").at(0));
  EXPECT_EQ(words["samples"], "48");
}

}  // namespace
}  // namespace drevintool::testing
