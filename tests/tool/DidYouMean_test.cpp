#include <gtest/gtest.h>

#include <filesystem>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

// Names that are nearly right, in every place that takes a name.
class DidYouMean : public ::testing::Test {
 protected:
  DidYouMean() {
    PartFixture part = rgbazPart(8, 8, 110.0);
    part.channels.push_back({"mask.left", Imf::HALF, [](int, int) { return 0.5; }});
    writeExrFixture(input_, part);
    writeBytes(script_, "Drevin {\n name Near\n}\nDrevin {\n name Distant\n}\n");
  }

  void expectHint(const Texts& more, const std::string& hint) const {
    expectHintOf(renderArguments(input_, folder_.file("out.exr"), more), hint);
  }

  static void expectHintOf(const Texts& arguments, const std::string& hint) {
    const RunResult result = runCommand(arguments);
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find("did you mean " + hint + "?"), std::string::npos) << result.error;
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string script_ = folder_.file("a.nk");
};

TEST_F(DidYouMean, subcommandsAndOptions) {
  expectHintOf({"shet"}, "sheet");
  expectHintOf({"inpsect"}, "inspect");
  expectHint({"--repotr", "r.json"}, "--report");
  expectHintOf({"controls", "--jsno"}, "--json");
  expectHintOf({"render", "--input", input_, "--out", folder_.file("o.exr")}, "--output");
}

TEST_F(DidYouMean, folderOfTheOutput) {
  std::filesystem::create_directory(folder_.file("renders"));
  const RunResult result = runCommand(renderArguments(input_, folder_.file("rendres/o.exr")));
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("did you mean " + folder_.file("renders") + "?"), std::string::npos)
      << result.error;
}

TEST_F(DidYouMean, controlsAndChoices) {
  expectHint({"--set", "focalPlan=3"}, "focalPlane");
  expectHint({"--set", "focalPlan@3=3", "--frames", "3"}, "focalPlane");
  expectHint({"--set", "kernelType=Circlar"}, "'Circular'");
}

TEST_F(DidYouMean, channels) {
  expectHint({"--channels", "mask.letf"}, "mask.left");
  expectHint({"--set", "depthChannel=mask.lft"}, "mask.left");
  expectHint({"--set", "bokehChannels=rgba.read"}, "rgba.red");
  expectHintOf({"sheet", "--input", input_, "--vary", "depthChannel=Z,maskleft", "--output",
                folder_.file("o.png"), "--plugin", builtPlugin()},
               "mask.left");
}

TEST_F(DidYouMean, optionThatIsGivenTwice_isToldAsThat) {
  const RunResult result =
      runCommand(renderArguments(input_, folder_.file("o.exr"), {"--input", input_}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--input: is given more than once"), std::string::npos)
      << result.error;
}

TEST_F(DidYouMean, layers) {
  expectHint({"--set", "bokehChannels=mask.lefft"}, "mask.left");
}

TEST_F(DidYouMean, nodesOfAScript) {
  expectHint({"--script", script_, "--node", "Neer"}, "Near");
  const RunResult far = runCommand(renderArguments(input_, folder_.file("out.exr"),
                                                   {"--script", script_, "--node", "Something"}));
  EXPECT_NE(far.error.find("; it has Near, Distant"), std::string::npos) << far.error;
}

TEST_F(DidYouMean, cameraKeys) {
  expectHint({"--camera", "focalLenght=50"}, "focalLength");
  expectHint({"--camera", "heder"}, "header");
  writeBytes(folder_.file("c.json"), "{\"fstop\": 2}");
  expectHint({"--camera", folder_.file("c.json")}, "fStop");
}

TEST_F(DidYouMean, namesOfTheFormat) {
  expectHint({"--compression", "pzi"}, "piz");
  expectHint({"--type", "hlaf"}, "half");
}

TEST_F(DidYouMean, partsAndViewsOfADeepFile) {
  DeepPartFixture left = opaqueDeepPart(8, 8, 110.0);
  left.name = "balls";
  left.view = "left";
  DeepPartFixture right = left;
  right.name = "trees";
  right.view = "right";
  const std::string deep = folder_.file("deep.exr");
  writeDeepFixture(deep, {left, right});
  const std::string output = folder_.file("out.exr");
  expectHintOf(deepArguments(deep, output, {"--deep-part", "tress"}), "trees");
  expectHintOf(deepArguments(deep, output, {"--view", "rihgt"}), "right");
  expectHintOf(deepArguments(deep, output, {"--deep-part", "balls", "--view", "lfet"}), "left");
  expectHintOf(deepArguments(deep, output, {"--deep-order", "farfirst"}), "far-first");
}

TEST_F(DidYouMean, filesOfASequence) {
  writeExrFixture(folder_.file("beauty.0001.exr"), rgbazPart(8, 8, 1.0));
  expectHintOf(renderArguments(folder_.file("beuaty.####.exr"), folder_.file("o.####.exr"),
                               {"--frames", "1-3"}),
               folder_.file("beauty.####.exr"));
}

TEST_F(DidYouMean, depthChannel_isProposed) {
  PartFixture part = rgbazPart(8, 8, 110.0);
  part.channels.back().name = "scene.depth";
  writeExrFixture(input_, part);
  const RunResult result = runCommand(renderArguments(input_, folder_.file("out.exr")));
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_NE(result.error.find("depthChannel=NAME, perhaps scene.depth; it has"), std::string::npos)
      << result.error;
}

}  // namespace
}  // namespace drevintool::testing
