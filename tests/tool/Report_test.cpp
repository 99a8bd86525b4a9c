#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using nlohmann::json;

class Report : public ::testing::Test {
 protected:
  Report() {
    PartFixture part = rgbazPart(32, 24, 110.0);
    part.data = Imath::Box2i({4, 4}, {27, 19});
    writeExrFixture(input_, part);
  }

  json render(std::vector<std::string> more) {
    more.insert(more.end(), {"--report", report_});
    const RunResult result = runCommand(renderArguments(input_, folder_.file("out.exr"), more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return json::parse(bytesOfFile(report_));
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string report_ = folder_.file("report.json");
};

TEST_F(Report, node_isNamedWithVersionBuildAndHash) {
  const json report = render({});
  EXPECT_EQ(report["node"]["class"], "Drevin");
  EXPECT_EQ(report["node"]["version"], "1.4.6");
  EXPECT_EQ(report["node"]["build"], "Oct  4 2019 for 12.0");
  EXPECT_EQ(report["node"]["hash"].get<std::string>().size(), 16U);
}

TEST_F(Report, hash_followsTheControls) {
  const json plain = render({});
  EXPECT_EQ(render({})["node"]["hash"], plain["node"]["hash"]);
  EXPECT_NE(render({"--set", "bloom=0.5"})["node"]["hash"], plain["node"]["hash"]);
}

TEST_F(Report, formatAndBox_areThoseOfTheResult) {
  const json report = render({"--region", "6,6,20,12"});
  EXPECT_EQ(report["format"]["width"], 32);
  EXPECT_EQ(report["format"]["height"], 24);
  EXPECT_EQ(report["box"], json({6, 6, 20, 12}));
}

TEST_F(Report, controls_haveValueAndState) {
  const json controls = render({"--set", "focalPlane=90"})["controls"];
  EXPECT_EQ(controls.size(), 42U);
  EXPECT_EQ(controls["focalPlane"], json({{"value", 90}, {"enabled", true}}));
  EXPECT_EQ(controls["apertureWidth"], json({{"value", 22}, {"enabled", false}}));
}

TEST_F(Report, whatWasAskedOfTheInput_isThere) {
  const json asked = render({})["inputs"]["Input"];
  EXPECT_EQ(asked["file"], input_);
  EXPECT_EQ(asked["asked"]["box"], json({4, 4, 28, 20})) << "clipped to what the input has";
  const json channels = asked["asked"]["channels"];
  for (const char* name : {"rgba.red", "rgba.alpha", "depth.Z"}) {
    EXPECT_NE(std::find(channels.begin(), channels.end(), name), channels.end()) << name;
  }
}

TEST_F(Report, warningsOfTheNode_areKept) {
  const std::vector<std::string> settings = {"--set", "max_kernelsize=3", "--set", "multiplier=40"};
  const json report = render(settings);
  ASSERT_EQ(report["warnings"].size(), 1U);
  EXPECT_EQ(report["warnings"][0].get<std::string>().rfind("Max kernel size is less than", 0), 0U);
  const RunResult result = runCommand(renderArguments(input_, folder_.file("out.exr"), settings));
  EXPECT_EQ(result.error, "drevin: warning: " + report["warnings"][0].get<std::string>() + "\n");
}

TEST_F(Report, times_addUpToNoMoreThanTheTotal) {
  const json seconds = render({})["seconds"];
  double sum = 0.0;
  for (const char* step : {"read", "aperture", "estimate", "kernels", "defocus", "write"}) {
    ASSERT_TRUE(seconds[step].is_number()) << step;
    EXPECT_GE(seconds[step], 0.0) << step;
    sum += seconds[step].get<double>();
  }
  EXPECT_GT(seconds["defocus"], 0.0);
  EXPECT_LE(sum, seconds["total"].get<double>() + 1e-6);
}

TEST_F(Report, threadsAndMemory_areThere) {
  const json report = render({"--threads", "2"});
  EXPECT_EQ(report["threads"], 2);
  EXPECT_GT(report["peakMemoryBytes"], 1 << 20);
}

TEST_F(Report, reportThatCannotBeWritten_isFour) {
  const RunResult result = runCommand(renderArguments(
      input_, folder_.file("out.exr"), {"--report", folder_.file("no/report.json")}));
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_EQ(folder_.entries(), std::vector<std::string>{"in.exr"});
}

TEST(ReportOnStandardOutput, isTheSameAsInAFile) {
  const ScratchFolder folder;
  const std::string input = folder.file("in.exr");
  writeExrFixture(input, rgbazPart(16, 12, 90.0));
  const RunResult one = runCommand(renderArguments(input, folder.file("o.exr"), {"--report", "-"}));
  ASSERT_EQ(one.exitCode, 0) << one.error;
  EXPECT_EQ(nlohmann::json::parse(one.out)["output"], folder.file("o.exr"));
  const RunResult all = runCommand(
      renderArguments(input, folder.file("o.#.exr"), {"--frames", "1-3", "--report", "-"}));
  ASSERT_EQ(all.exitCode, 0) << all.error;
  EXPECT_EQ(nlohmann::json::parse(all.out)["frames"].size(), 3U);
  const RunResult sheet =
      runCommand({"sheet", "--quiet", "--plugin", builtPlugin(), "--input", input, "--vary",
                  "multiplier=1,2", "--output", folder.file("s.exr"), "--report", "-"});
  ASSERT_EQ(sheet.exitCode, 0) << sheet.error;
  EXPECT_EQ(nlohmann::json::parse(sheet.out)["pictures"].size(), 2U);
  EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.exr", "o.1.exr", "o.2.exr", "o.3.exr",
                                                        "o.exr", "s.exr"}));
}

TEST(ReportOnStandardOutput, thatIsLost_isExitCode4) {
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(16, 12, 90.0));
  RunOptions options;
  options.inChild = [] { close(STDOUT_FILENO); };
  const RunResult result = runCommand(
      renderArguments(folder.file("in.exr"), folder.file("o.exr"), {"--report", "-"}), options);
  EXPECT_EQ(result.exitCode, 4) << result.error;
}

}  // namespace
}  // namespace drevintool::testing
