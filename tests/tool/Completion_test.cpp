#include "completion/Completion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

bool contains(const Texts& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

TEST(Completion, firstWord_isASubcommand) {
  EXPECT_EQ(completionOf({"co"}).words, (Texts{"controls"}));
  EXPECT_TRUE(contains(completionOf({""}).words, "sheet"));
  EXPECT_TRUE(contains(completionOf({"--v"}).words, "--version"));
}

TEST(Completion, options_areThoseOfTheSubcommand) {
  EXPECT_TRUE(contains(completionOf({"sheet", "--va"}).words, "--vary"));
  EXPECT_TRUE(completionOf({"render", "--va"}).words.empty());
  EXPECT_TRUE(contains(completionOf({"render", "--input", "a.exr", "--ou"}).words, "--output"));
  EXPECT_TRUE(completionOf({"nonsense", "--ou"}).words.empty());
}

TEST(Completion, files_haveTheExtensionsOfTheirOption) {
  EXPECT_EQ(completionOf({"render", "--input", ""}).extensions, (Texts{".exr"}));
  EXPECT_EQ(completionOf({"render", "--output", "x"}).extensions, (Texts{".exr", ".png"}));
  EXPECT_EQ(completionOf({"render", "--script", ""}).extensions, (Texts{".nk"}));
  EXPECT_EQ(completionOf({"inspect", ""}).extensions, (Texts{".exr"}));
  EXPECT_TRUE(completionOf({"demo", ""}).folders);
  EXPECT_TRUE(completionOf({"demo", ""}).extensions.empty());
}

TEST(Completion, choices_areThoseOfTheOption) {
  EXPECT_EQ(completionOf({"render", "--type", "h"}).words, (Texts{"half"}));
  EXPECT_EQ(completionOf({"render", "--deep-order", "f"}).words, (Texts{"far-first"}));
  EXPECT_TRUE(contains(completionOf({"render", "--compression", ""}).words, "zips"));
}

TEST(Completion, valueBehindAnEqualsSign_keepsItsOption) {
  EXPECT_EQ(completionOf({"render", "--compression=pi"}).words, (Texts{"--compression=piz"}));
  EXPECT_EQ(completionOf({"render", "--output=x"}).extensions, (Texts{".exr", ".png"}));
}

TEST(Completion, camera_isHeaderOrKeysOrAFile) {
  const Completion completion = completionOf({"render", "--camera", ""});
  EXPECT_TRUE(contains(completion.words, "header"));
  EXPECT_TRUE(contains(completion.words, "focalLength="));
  EXPECT_EQ(completion.extensions, (Texts{".json"}));
}

TEST(Completion, lines_areWhatTheShellReads) {
  Completion completion;
  completion.extensions = {".exr", ".png"};
  completion.folders = true;
  completion.open = true;
  completion.words = {"a", "b c"};
  EXPECT_EQ(completionText(completion), "+files .exr .png\n+folders\n+open\na\nb c\n");
}

// The shell's own part.
class BashCompletion : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists("/bin/bash")) GTEST_SKIP() << "no bash here";
  }

  // COMPREPLY after `line`, with the cursor at its end.
  Texts replies(const std::string& line) const {
    RunOptions options;
    options.command = "/bin/bash";
    options.environment["DREVIN_PLUGIN"] = builtPlugin();
    const std::string script =
        "cd \"$1\"; source \"$2\"; COMP_LINE=\"$3 $4\"; COMP_POINT=${#COMP_LINE}; _drevin; "
        "printf '%s\\n' \"${COMPREPLY[@]}\"";
    const RunResult result = runCommand(
        {"--norc", "-c", script, "bash", folder_.path(), DREVIN_COMPLETION, DREVIN_COMMAND, line},
        options);
    EXPECT_EQ(result.error, "");
    Texts words;
    std::istringstream lines(result.out);
    for (std::string word; std::getline(lines, word);) {
      if (!word.empty()) words.push_back(word);
    }
    std::sort(words.begin(), words.end());
    return words;
  }

  ScratchFolder folder_;
};

TEST_F(BashCompletion, subcommandsAndOptions) {
  EXPECT_EQ(replies("con"), (Texts{"controls"}));
  EXPECT_EQ(replies("sheet --col"), (Texts{"--columns"}));
  EXPECT_TRUE(contains(replies("render "), "--input"));
}

TEST_F(BashCompletion, controlNames) {
  EXPECT_EQ(replies("render --set focalP"), (Texts{"focalPlane="}));
  EXPECT_EQ(replies("render --set focalPlane=3 --set kNumS"), (Texts{"kNumSides="}));
  EXPECT_EQ(replies("sheet --vary multi"), (Texts{"multiplier="}));
}

// Bash replaces only what stands behind the '='.
TEST_F(BashCompletion, choicesOfAControl) {
  EXPECT_EQ(replies("render --set kernelType=C"), (Texts{"Circular"}));
  EXPECT_EQ(replies("render --set kernelType=A"), (Texts{"Aperture\\ Blades"}));
  EXPECT_EQ(replies("render --set filmFormat=Vista\\ V"), (Texts{"Vista\\ Vision"}));
  EXPECT_EQ(replies("render --set realWorldLens="), (Texts{"false", "true"}));
  EXPECT_EQ(replies("sheet --vary depthStyle=Real,1"), (Texts{"Real,1/z"}));
}

TEST_F(BashCompletion, depthChannel_hasAllChannelsThatCouldBeTheDepth) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  for (const char* name : {"left.Z", "depth.near", "normals.X", "normals.Z"})
    part.channels.push_back({name, Imf::FLOAT, [](int, int) { return 7.0; }});
  part.channels.push_back({"ids.Z", Imf::UINT, [](int, int) { return 7.0; }});
  writeExrFixture(folder_.file("in.exr"), part);
  const Texts depths = {"Z", "depth.near", "left.Z", "none"};
  EXPECT_EQ(replies("render --input in.exr --set depthChannel="), depths);
  EXPECT_EQ(replies("render --input=in.exr --set depthChannel="), depths);
  EXPECT_EQ(replies("render --set depthChannel=le --input in.exr --set depthChannel=le"),
            (Texts{"left.Z"}));
  EXPECT_EQ(replies("inspect in.exr --set depthChannel=d"), (Texts{"depth.near"}));
  EXPECT_EQ(replies("sheet --input in.exr --vary depthChannel=Z,l"), (Texts{"Z,left.Z"}));
  EXPECT_TRUE(contains(replies("render --input none.exr --set depthChannel="), "Z"));
}

TEST_F(BashCompletion, depthChannelOfDeepPictures_hasThoseOfTheSamples) {
  writeDeepFixture(folder_.file("deep.exr"), {opaqueDeepPart(8, 4, 5.0)});
  EXPECT_EQ(replies("render --deep deep.exr --set depthChannel="),
            (Texts{"deep.back", "deep.front", "none"}));
}

TEST_F(BashCompletion, filesOfTheRightKind) {
  for (const char* name : {"a.exr", "b.EXR", "c.png", "d.txt", "e f.exr", "g.nk"})
    writeBytes(folder_.file(name), "x");
  std::filesystem::create_directory(folder_.file("shots"));
  EXPECT_EQ(replies("render --input "), (Texts{"a.exr", "b.EXR", "e f.exr", "shots"}));
  EXPECT_EQ(replies("render --output c"), (Texts{"c.png"}));
  EXPECT_EQ(replies("render --output=c"), (Texts{"c.png"}));
  EXPECT_EQ(replies("render --script "), (Texts{"g.nk", "shots"}));
  EXPECT_TRUE(contains(replies("demo "), "shots"));
  EXPECT_FALSE(contains(replies("demo "), "a.exr"));
}

TEST_F(BashCompletion, unknownSubcommand_hasNone) {
  EXPECT_TRUE(replies("nonsense --in").empty());
}

}  // namespace
}  // namespace drevintool::testing
