#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "EmbeddedHost/Render.h"
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

TEST(DoctorCommand, text_hasALineForEachFinding) {
  const RunResult result = runCommand({"doctor", "--plugin", builtPlugin()});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  for (const char* begin :
       {"command ", "plug-in ", "OpenEXR ", "libpng ", "processors ", "memory "})
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
