#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>

#include "CommandRun.h"
#include "EmbeddedHost/ProcessorQuota.h"
#include "EmbeddedHost/Render.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool::testing {
namespace {

using nlohmann::ordered_json;

TEST(DoctorCommand, json_tellsWhatRendersRunWith) {
  const RunResult result = runCommand({"doctor", "--json", "--plugin", builtPlugin()});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const ordered_json json = ordered_json::parse(result.out);
  EXPECT_EQ(json["plugin"]["class"], "Drevin");
  EXPECT_NE(json["plugin"]["file"].get<std::string>().find("Drevin.so"), std::string::npos);
  EXPECT_EQ(json["processors"]["usable"], embedded::usableProcessors());
  EXPECT_GE(json["memory"]["pictures"].get<std::uint64_t>(), std::uint64_t{64} << 20);
  EXPECT_FALSE(json["openexr"].get<std::string>().empty());
  EXPECT_FALSE(json["command"].get<std::string>().empty());
}

TEST(DoctorCommand, simd_isTheOneThatIsForced) {
  RunOptions options;
  options.environment["DREVIN_SIMD"] = "baseline";
  const RunResult forced = runCommand({"doctor", "--json", "--plugin", builtPlugin()}, options);
  EXPECT_EQ(ordered_json::parse(forced.out)["plugin"]["simd"], "baseline");
}

TEST(DoctorCommand, json_hasTheQuotaOfTheControlGroups) {
  const RunResult result = runCommand({"doctor", "--json", "--plugin", builtPlugin()});
  const ordered_json quota = ordered_json::parse(result.out)["processors"]["cgroup"];
  const std::optional<unsigned> known = embedded::quotaProcessors();
  EXPECT_EQ(quota, known ? ordered_json(*known) : ordered_json()) << quota;
}

TEST(DoctorCommand, host_isNamedWithItsVersionAndItsLibrary) {
  const RunResult result = runCommand({"doctor", "--json", "--plugin", builtPlugin()});
  const ordered_json host = ordered_json::parse(result.out)["host"];
  EXPECT_EQ(host["name"], "embedded");
  EXPECT_EQ(host["interface"], "12.0v1");
  const std::string file = host["file"];
  EXPECT_NE(file.find("libdrevin_host"), std::string::npos) << file;
  EXPECT_TRUE(std::filesystem::exists(file)) << file;
}

// The class registers with a date that is the same in every build.
TEST(DoctorCommand, plugin_hasTheNodesVersionAndNoDate) {
  const RunResult json = runCommand({"doctor", "--json", "--plugin", builtPlugin()});
  const ordered_json plugin = ordered_json::parse(json.out)["plugin"];
  EXPECT_EQ(plugin["version"], ordered_json::parse(json.out)["command"]);
  EXPECT_EQ(plugin["interface"], "12.0");
  const RunResult text = runCommand({"doctor", "--plugin", builtPlugin()});
  for (const std::string& out : {json.out, text.out}) {
    EXPECT_EQ(out.find("2019"), std::string::npos) << out;
    EXPECT_EQ(out.find("built"), std::string::npos) << out;
  }
}

TEST(DoctorCommand, jsonOfAMissingPlugin_hasTheErrorLine) {
  const RunResult result = runCommand({"doctor", "--json", "--plugin", "/no/such/Drevin.so"});
  EXPECT_EQ(result.exitCode, static_cast<int>(ExitCode::PluginNotLoaded));
  const std::string error = ordered_json::parse(result.out)["plugin"]["error"];
  EXPECT_NE(error.find("/no/such/Drevin.so"), std::string::npos);
  EXPECT_EQ(result.error, "drevin: error: " + error + "\n");
}

TEST(DoctorCommand, jsonOfAPluginThatIsNone_hasTheErrorLine) {
  const ScratchFolder folder;
  writeBytes(folder.file("Drevin.so"), "no library");
  const RunResult result = runCommand({"doctor", "--json", "--plugin", folder.file("Drevin.so")});
  EXPECT_EQ(result.exitCode, static_cast<int>(ExitCode::PluginNotLoaded));
  const std::string error = ordered_json::parse(result.out)["plugin"]["error"];
  EXPECT_NE(error.find("not a plug-in"), std::string::npos) << error;
}

class UnknownSimd : public ::testing::Test {
 protected:
  RunResult run(const std::vector<std::string>& arguments, const std::string& simd) const {
    RunOptions options;
    options.environment["DREVIN_SIMD"] = simd;
    return runCommand(arguments, options);
  }
  std::string used() const {
    const RunResult result = runCommand({"doctor", "--json", "--plugin", builtPlugin()});
    return ordered_json::parse(result.out)["plugin"]["simd"];
  }

  const std::vector<std::string> doctor_ = {"doctor", "--plugin", builtPlugin()};
};

TEST_F(UnknownSimd, isNamedWithWhatIsUsedInstead) {
  const RunResult result = run(doctor_, "sse9");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error,
            "drevin: warning: DREVIN_SIMD=sse9: is none of baseline, avx2 or avx512; " + used() +
                " is used\n");
}

TEST_F(UnknownSimd, isNamedByRendersToo) {
  const ScratchFolder folder;
  writeExrFixture(folder.file("in.exr"), rgbazPart(8, 6, 1.0));
  const RunResult render = run(renderArguments(folder.file("in.exr"), folder.file("out.exr")), "x");
  EXPECT_EQ(render.exitCode, 0);
  EXPECT_EQ(linesStarting(render.error, "drevin: warning: DREVIN_SIMD=x: ").size(), 1U);
  const RunResult sheet =
      run({"sheet", "--quiet", "--plugin", builtPlugin(), "--input", folder.file("in.exr"),
           "--vary", "multiplier=1,2", "--output", folder.file("out.png")},
          "x");
  EXPECT_EQ(linesStarting(sheet.error, "drevin: warning: DREVIN_SIMD=x: ").size(), 1U);
}

TEST_F(UnknownSimd, knownValuesAndAnEmptyOne_areSilent) {
  for (const std::string& simd : {std::string("baseline"), used(), std::string()})
    EXPECT_EQ(run(doctor_, simd).error, "") << simd;
}

TEST_F(UnknownSimd, vectorsThatTheProcessorLacks_areNamedToo) {
  if (used() == "avx512") GTEST_SKIP() << "this processor has them all";
  EXPECT_EQ(run(doctor_, "avx512").error,
            "drevin: warning: DREVIN_SIMD=avx512: this processor has no such vectors; " + used() +
                " is used\n");
}

TEST(DoctorCommand, text_hasALineForEachFinding) {
  const RunResult result = runCommand({"doctor", "--plugin", builtPlugin()});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  for (const char* begin :
       {"command ", "plug-in ", "OpenEXR ", "host ", "libpng ", "processors ", "memory "})
    EXPECT_NE(("\n" + result.out).find(std::string("\n") + begin), std::string::npos) << begin;
}

TEST(DoctorCommand, missingPlugin_isToldAfterAllElse) {
  const RunResult result = runCommand({"doctor", "--plugin", "/no/such/Drevin.so"});
  EXPECT_EQ(result.exitCode, static_cast<int>(ExitCode::PluginNotLoaded));
  EXPECT_NE(result.error.find("/no/such/Drevin.so"), std::string::npos);
  EXPECT_NE(result.out.find("OpenEXR"), std::string::npos);
  EXPECT_EQ(result.out.find("plug-in"), std::string::npos);
}

TEST(DoctorCommand, addressSpaceLimit_isTold) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  RunOptions options;
  options.addressSpace = std::size_t{8} << 30;
  const RunResult result = runCommand({"doctor", "--json", "--plugin", builtPlugin()}, options);
  const ordered_json json = ordered_json::parse(result.out);
  ASSERT_TRUE(json["memory"]["addressSpace"].is_number());
  EXPECT_LT(json["memory"]["addressSpace"].get<std::uint64_t>(), std::uint64_t{8} << 30);
  EXPECT_LE(json["memory"]["pictures"].get<std::uint64_t>(),
            json["memory"]["addressSpace"].get<std::uint64_t>());
}

}  // namespace
}  // namespace drevintool::testing
