#include <gtest/gtest.h>

#include <filesystem>

#include "CommandRun.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;

// A tree of its own: bin/drevin, with the plug-in put where each test wants it.
class PluginSearch : public ::testing::Test {
 protected:
  PluginSearch() {
    for (const char* name : {"bin", "lib", "else"})
      fs::create_directory(folder_.file(name));
    fs::copy_file(DREVIN_COMMAND, folder_.file("bin/drevin"));
    options_.command = folder_.file("bin/drevin");
  }

  void putPlugin(const std::string& place) const {
    fs::copy_file(builtPlugin(), folder_.file(place));
  }

  RunResult controls(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"controls"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments, options_);
  }

  ScratchFolder folder_;
  RunOptions options_;
};

TEST_F(PluginSearch, besideTheCommand_isFound) {
  putPlugin("bin/Drevin.so");
  EXPECT_EQ(controls().exitCode, 0);
}

TEST_F(PluginSearch, inTheLibraryFolder_isFound) {
  putPlugin("lib/Drevin.so");
  EXPECT_EQ(controls().exitCode, 0);
}

TEST_F(PluginSearch, byTheEnvironment_isFound) {
  putPlugin("else/Drevin.so");
  options_.environment["DREVIN_PLUGIN"] = folder_.file("else/Drevin.so");
  EXPECT_EQ(controls().exitCode, 0);
  options_.environment["DREVIN_PLUGIN"] = folder_.file("else");
  EXPECT_EQ(controls().exitCode, 0);
}

TEST_F(PluginSearch, optionBeatsEnvironmentBeatsPlaces) {
  putPlugin("bin/Drevin.so");
  putPlugin("else/Drevin.so");
  options_.environment["DREVIN_PLUGIN"] = folder_.file("none.so");
  EXPECT_EQ(controls().exitCode, 5);
  EXPECT_EQ(controls({"--plugin", folder_.file("else/Drevin.so")}).exitCode, 0);
}

TEST_F(PluginSearch, variableThatNamesNone_isFiveAndNamesItAndTheRemedy) {
  putPlugin("bin/Drevin.so");
  options_.environment["DREVIN_PLUGIN"] = "/nonexist";
  const RunResult result = controls();
  EXPECT_EQ(result.exitCode, 5);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  for (const char* piece : {"DREVIN_PLUGIN: /nonexist", "unset it"})
    EXPECT_NE(result.error.find(piece), std::string::npos) << result.error;
  const RunResult option = controls({"--plugin", "/nonexist"});
  EXPECT_EQ(option.exitCode, 5);
  EXPECT_EQ(option.error.find("DREVIN_PLUGIN"), std::string::npos) << option.error;
}

TEST_F(PluginSearch, nowhere_isFiveAndNamesThePlacesAndTheRemedy) {
  const RunResult result = controls();
  EXPECT_EQ(result.exitCode, 5);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("bin/Drevin.so"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find("--plugin"), std::string::npos) << result.error;
}

}  // namespace
}  // namespace drevintool::testing
