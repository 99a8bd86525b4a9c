#include "picture/NearestFile.h"

#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

class NearestFile : public ::testing::Test {
 protected:
  NearestFile() {
    for (const char* name : {"street.exr", "street.0007.exr", "camera.json", ".hidden.exr"})
      writeBytes(folder_.file(name), "x");
  }

  std::string hint(const std::string& name) const { return nearestFileHint(folder_.file(name)); }
  std::string meant(const std::string& name) const {
    return "; did you mean " + folder_.file(name) + "?";
  }

  ScratchFolder folder_;
};

TEST_F(NearestFile, slipOfTheFingers_isSeenThrough) {
  EXPECT_EQ(hint("steret.exr"), meant("street.exr"));
  EXPECT_EQ(hint("Street.exr"), meant("street.exr"));
  EXPECT_EQ(hint("cmera.json"), meant("camera.json"));
}

TEST_F(NearestFile, wrongExtension_isSeenThrough) {
  EXPECT_EQ(hint("street.EXR"), meant("street.exr"));
  EXPECT_EQ(hint("camera.jsn"), meant("camera.json"));
  EXPECT_EQ(hint("camera"), meant("camera.json"));
}

TEST_F(NearestFile, otherFrames_areNotMeant) {
  EXPECT_EQ(hint("street.0008.exr"), "");
}

// Another sequence beside it, whole or not, has nothing to do with a frame that is missing.
TEST_F(NearestFile, framesOfOtherSequences_areNotMeant) {
  writeBytes(folder_.file("a.0001.exr"), "x");
  for (const char* name : {"b.0001.exr", "b.0002.exr", "b.0003.exr"})
    writeBytes(folder_.file(name), "x");
  EXPECT_EQ(hint("a.0003.exr"), "");
  EXPECT_EQ(hint("c.0003.exr"), "");
  EXPECT_EQ(hint("c.0004.exr"), "");
}

TEST_F(NearestFile, sameFrameOfANameThatIsNear_isMeantUnlessItsOwnSequenceIsThere) {
  EXPECT_EQ(hint("steret.0007.exr"), meant("street.0007.exr"));
  EXPECT_EQ(hint("steret.0008.exr"), "");
  writeBytes(folder_.file("steret.0001.exr"), "x");
  EXPECT_EQ(hint("steret.0007.exr"), "");
}

TEST_F(NearestFile, sequences_areMeantByTheirPattern) {
  const auto sequenceHint = [&](const char* name) {
    return nearestSequenceHint(folder_.file(name));
  };
  writeBytes(folder_.file("v2_shot.12.exr"), "x");
  EXPECT_EQ(sequenceHint("steret.0001.exr"), meant("street.####.exr"));
  EXPECT_EQ(sequenceHint("street.1.exr"), meant("street.####.exr")) << "other padding";
  EXPECT_EQ(sequenceHint("v2_shoot.01.exr"), meant("v2_shot.##.exr"));
  EXPECT_EQ(sequenceHint("street.0001.exr"), "") << "is there, with other frames";
  EXPECT_EQ(sequenceHint("garden.0001.exr"), "");
  EXPECT_EQ(sequenceHint("steret.0001.png"), "");
  EXPECT_EQ(nearestSequenceHint("/no/such/folder/street.0001.exr"), "");
}

TEST_F(NearestFile, missingFrames_nameANearPatternOnlyIfNoneIsThere) {
  for (const char* name : {"beauty.0001.exr", "beauty.0002.exr"})
    writeExrFixture(folder_.file(name), rgbazPart(8, 8, 1.0));
  const auto errorOf = [&](const char* input, const char* frames) {
    const RunResult result = runCommand(
        renderArguments(folder_.file(input), folder_.file("out.#.exr"), {"--frames", frames}));
    EXPECT_EQ(result.exitCode, 2) << result.error;
    return result.error;
  };
  EXPECT_NE(errorOf("beuaty.####.exr", "1-2").find(meant("beauty.####.exr")), std::string::npos);
  EXPECT_EQ(errorOf("beauty.####.exr", "1-3").find("did you mean"), std::string::npos);
  EXPECT_EQ(errorOf("beauty.####.exr", "7-9").find("did you mean"), std::string::npos);
  EXPECT_EQ(errorOf("smoke.####.exr", "1-2").find("did you mean"), std::string::npos);
}

TEST_F(NearestFile, otherNames_areNotMeant) {
  EXPECT_EQ(hint("garden.exr"), "");
  EXPECT_EQ(hint("s.exr"), "");
  EXPECT_EQ(hint("hidden.exr"), "");
}

TEST_F(NearestFile, fileThatIsThere_needsNoHint) {
  EXPECT_EQ(hint("street.exr"), "");
}

TEST_F(NearestFile, folderThatIsNot_givesNone) {
  EXPECT_EQ(nearestFileHint("/no/such/folder/street.exr"), "");
  EXPECT_EQ(nearestFileHint(""), "");
  EXPECT_EQ(nearestFileHint("/"), "");
}

// Every place that names a file, through the command.
TEST_F(NearestFile, everyInput_isHintedAt) {
  writeExrFixture(folder_.file("beauty.exr"), rgbazPart(8, 8, 1.0));
  const std::string there = folder_.file("beauty.exr");
  const std::string output = folder_.file("out.exr");
  const std::vector<std::vector<std::string>> runs = {
      renderArguments(folder_.file("beuaty.exr"), output),
      deepArguments(folder_.file("beuaty.exr"), output),
      renderArguments(there, output, {"--kernel", folder_.file("steet.exr")}),
      renderArguments(there, output, {"--mattes", folder_.file("steet.exr")}),
      renderArguments(there, output, {"--camera", folder_.file("camra.json")}),
      renderArguments(there, output, {"--script", folder_.file("street.nk")}),
      {"inspect", folder_.file("beuaty.exr")},
      {"doctor", "--plugin", folder_.file("steet.exr")}};
  for (const std::vector<std::string>& arguments : runs) {
    const RunResult result = runCommand(arguments);
    EXPECT_NE(result.exitCode, 0);
    EXPECT_NE(result.error.find("did you mean " + folder_.path()), std::string::npos)
        << result.error;
  }
}

}  // namespace
}  // namespace drevintool::testing
