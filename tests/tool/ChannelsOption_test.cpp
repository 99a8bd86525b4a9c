#include <gtest/gtest.h>

#include <filesystem>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Names = std::vector<std::string>;

class Channels : public ::testing::Test {
 protected:
  Channels() {
    PartFixture part = rgbazPart(16, 12, 100.0);
    part.channels.push_back({"other.mask", Imf::HALF, [](int, int) { return 0.5; }});
    writeExrFixture(input_, part);
  }

  RunResult render(const std::vector<std::string>& more) const {
    return runCommand(renderArguments(input_, output_, more));
  }

  Names namesOf(const std::vector<std::string>& more) const {
    const RunResult result = render(more);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_).names();
  }

  // The command must stop with code 3 and one line that holds all of `pieces`.
  void expectUnreadable(const RunResult& result, const std::vector<std::string>& pieces) const {
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    for (const std::string& piece : pieces) {
      EXPECT_NE(result.error.find(piece), std::string::npos) << piece << " in " << result.error;
    }
    EXPECT_EQ(folder_.entries().size(), 1U) << "an output was left";
  }

  PartFixture colourOnly(const std::vector<std::string>& names) const {
    PartFixture part = rgbazPart(16, 12, 100.0);
    part.channels.clear();
    for (const std::string& name : names) {
      part.channels.push_back({name, Imf::HALF, [](int, int) { return 0.25; }});
    }
    return part;
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(Channels, byDefault_areAllOfTheInput) {
  EXPECT_EQ(namesOf({}), (Names{"A", "B", "G", "R", "Z", "other.mask"}));
}

TEST_F(Channels, list_isTakenByFileOrHostName) {
  EXPECT_EQ(namesOf({"--channels", "rgba.red,depth.Z"}), (Names{"R", "Z"}));
  EXPECT_EQ(namesOf({"--channels", "G,other.mask"}), (Names{"G", "other.mask"}));
  EXPECT_EQ(namesOf({"--channels", "rgb"}), (Names{"B", "G", "R"}));
  EXPECT_EQ(namesOf({"--channels", "rgba"}), (Names{"A", "B", "G", "R"}));
}

TEST_F(Channels, unknownOne_listsWhatThereIs) {
  expectUnreadable(render({"--channels", "R,velocity.x"}), {"velocity.x", "R", "Z", "other.mask"});
}

TEST_F(Channels, coloursThatTheOutputTypeMakes_areAdded) {
  writeExrFixture(input_, colourOnly({"Z"}));
  for (const char* type : {"2", "3", "4"}) {
    EXPECT_EQ(namesOf({"--set", std::string("outputType=") + type}), (Names{"B", "G", "R", "Z"}));
  }
  EXPECT_EQ(namesOf({}), Names{"Z"});
}

TEST_F(Channels, madeColours_areDrawn) {
  writeExrFixture(input_, colourOnly({"Z"}));
  namesOf({"--set", "outputType=Focus Matte"});
  const ReadFile result = readBack(output_);
  EXPECT_EQ(result.value("R", 3, 3), 0.0);
  EXPECT_EQ(result.value("G", 3, 3) + result.value("B", 3, 3), 1.0);
}

TEST_F(Channels, filterShape_needsNoDepth) {
  writeExrFixture(input_, colourOnly({"R", "G", "B"}));
  const RunResult result = render({"--set", "outputType=Filter Shape"});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_GT(readBack(output_).value("R", 6, 5), 0.0) << "inside the aperture";
}

TEST_F(Channels, inputWithoutDepth_namesTheControlAndTheChannels) {
  writeExrFixture(input_, colourOnly({"R", "G", "B"}));
  for (const char* type : {"0", "1", "2", "4"}) {
    expectUnreadable(render({"--set", std::string("outputType=") + type}),
                     {"in.exr", "depth.Z", "depthChannel", "R"});
  }
}

TEST_F(Channels, depthByAnotherName_isTaken) {
  writeExrFixture(input_, colourOnly({"R", "G", "B"}));
  EXPECT_EQ(render({"--set", "depthChannel=G"}).exitCode, 0);
  EXPECT_EQ(render({"--set", "depthChannel=none"}).exitCode, 0);
}

TEST_F(Channels, depthThatTheInputLacks_listsWhatThereIs) {
  expectUnreadable(render({"--set", "depthChannel=deep.front"}), {"deep.front", "Z"});
}

TEST_F(Channels, bokehChannelThatTheInputLacks_listsWhatThereIs) {
  expectUnreadable(render({"--set", "bokehChannels=R,nope.x"}), {"nope.x", "other.mask"});
}

TEST_F(Channels, layerAsBokehChannels_standsForItsMembers) {
  render({"--set", "bokehChannels=other", "--type", "float"});
  EXPECT_EQ(readBack(output_).channels.at("other.mask").type, Imf::FLOAT);
  EXPECT_EQ(readBack(output_).channels.at("R").type, Imf::HALF);
}

TEST_F(Channels, matteChannel_comesFromTheMattesFile) {
  const std::string mattes = input_;
  EXPECT_EQ(render({"--mattes", mattes, "--set", "defocusMatteChannel=other.mask"}).exitCode, 0);
  std::filesystem::remove(output_);
  expectUnreadable(render({"--mattes", mattes, "--set", "bloomMatteChannel=nope"}),
                   {"nope", "other.mask"});
}

TEST_F(Channels, matteChannelWithoutMattesFile_isWarnedOf) {
  const RunResult result = render({"--set", "bloomMatteChannel=other.mask"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: ").size(), 1U) << result.error;
  EXPECT_NE(result.error.find("--mattes"), std::string::npos);
}

TEST_F(Channels, missingKernelChannel_comesFromTheKernelFile) {
  expectUnreadable(render({"--kernel", input_, "--set", "kernelType=Input", "--set",
                           "missingKernelChannel=nope"}),
                   {"nope", "other.mask"});
  EXPECT_EQ(render({"--kernel", input_, "--set", "kernelType=Input", "--set",
                    "missingKernelChannel=other.mask"})
                .exitCode,
            0);
}

TEST_F(Channels, kernelWithoutAlpha_isWarnedOfUnlessAChannelStandsIn) {
  const std::string kernel = folder_.file("kernel.exr");
  writeExrFixture(kernel, colourOnly({"R", "G", "B"}));
  const std::vector<std::string> options = {"--kernel", kernel, "--set", "kernelType=Input"};
  const RunResult warned = render(options);
  EXPECT_EQ(warned.exitCode, 0);
  EXPECT_EQ(linesStarting(warned.error, "drevin: warning: ").size(), 1U) << warned.error;
  EXPECT_NE(warned.error.find("no channel A"), std::string::npos) << warned.error;
  EXPECT_NE(warned.error.find("missingKernelChannel"), std::string::npos) << warned.error;

  std::vector<std::string> withStandIn = options;
  withStandIn.insert(withStandIn.end(), {"--set", "missingKernelChannel=R"});
  EXPECT_TRUE(linesStarting(render(withStandIn).error, "drevin: warning: ").empty());
}

TEST_F(Channels, kernelThatIsNotUsed_isWarnedOfWithTheRemedy) {
  for (const char* type : {"Circular", "Aperture Blades"}) {
    const RunResult result =
        render({"--kernel", input_, "--set", std::string("kernelType=") + type});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(linesStarting(result.error, "drevin: warning: --kernel ").size(), 1U) << result.error;
    EXPECT_NE(result.error.find("--set kernelType=Input"), std::string::npos) << result.error;
  }
  EXPECT_TRUE(linesStarting(render({"--kernel", input_, "--set", "kernelType=Input"}).error,
                            "drevin: warning: ")
                  .empty());
}

TEST_F(Channels, mattesThatAreNotUsed_areWarnedOfWithTheRemedy) {
  const RunResult result = render({"--mattes", input_});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: --mattes ").size(), 1U) << result.error;
  for (const char* control :
       {"defocusMatteChannel", "bloomMatteChannel", "chromicAberrationMatteChannel"}) {
    EXPECT_NE(result.error.find(control), std::string::npos) << result.error;
    const RunResult used =
        render({"--mattes", input_, "--set", std::string(control) + "=other.mask"});
    EXPECT_TRUE(linesStarting(used.error, "drevin: warning: ").empty()) << used.error;
  }
}

TEST_F(Channels, pngWithoutColours_isRefused) {
  writeExrFixture(input_, colourOnly({"Z"}));
  const RunResult result = runCommand(renderArguments(input_, folder_.file("out.png")));
  expectUnreadable(result, {"Z"});
}

TEST_F(Channels, moreThanTheHostHasNumbersFor_passThrough) {
  std::vector<std::string> names = {"R", "G", "B", "Z"};
  for (int i = 0; i < 1100; ++i)
    names.push_back("layer" + std::to_string(i) + ".x");
  writeExrFixture(input_, colourOnly(names));
  EXPECT_EQ(namesOf({}).size(), names.size());
  EXPECT_EQ(readBack(output_).value("layer1099.x", 2, 2), 0.25);
}

}  // namespace
}  // namespace drevintool::testing
