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
