#include <gtest/gtest.h>

#include <filesystem>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

class OutputFaults : public ::testing::Test {
 protected:
  OutputFaults() { writeExrFixture(input_, noisyPart()); }

  static double hashed(int number) {
    auto bits = static_cast<std::uint32_t>(number) * 2654435761U;
    bits = (bits ^ (bits >> 15)) * 2246822519U;
    return (bits >> 8) / 16777216.0;
  }

  // Hardly compressible, so that the result is surely larger than the limits below.
  static PartFixture noisyPart() {
    PartFixture part = rgbazPart(64, 64, 100.0);
    for (ChannelFixture& channel : part.channels) {
      if (channel.name == "Z") continue;
      channel.type = Imf::FLOAT;
      channel.value = [](int x, int y) { return hashed(x + 64 * y); };
    }
    return part;
  }

  RunResult render(const std::string& output, const RunOptions& options = {}) const {
    return runCommand(renderArguments(input_, output), options);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

TEST_F(OutputFaults, noRoomForTheFile_isFourAndTheOldOneStands) {
  for (const char* name : {"out.exr", "out.png"}) {
    for (const std::size_t bytes : {std::size_t{600}, std::size_t{4096}}) {
      writeBytes(folder_.file(name), "old");
      RunOptions options;
      options.fileSize = bytes;
      const RunResult result = render(folder_.file(name), options);
      EXPECT_EQ(result.exitCode, 4) << name << " " << bytes;
      EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
      EXPECT_TRUE(bytesOfFile(folder_.file(name)) == "old");
      std::filesystem::remove(folder_.file(name));
      EXPECT_EQ(folder_.entries(), std::vector<std::string>{"in.exr"});
    }
  }
}

TEST_F(OutputFaults, directoryOrDevice_isFour) {
  std::filesystem::create_directory(folder_.file("dir.exr"));
  std::filesystem::create_symlink("/dev/full", folder_.file("full.exr"));
  for (const char* name : {"dir.exr", "full.exr"}) {
    const RunResult result = render(folder_.file(name));
    EXPECT_EQ(result.exitCode, 4) << name;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
}

TEST_F(OutputFaults, outputOverTheInput_isWritten) {
  const RunResult result = render(input_);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(input_).channels.at("R").type, Imf::FLOAT);
}

TEST_F(OutputFaults, symbolicLink_isFollowed) {
  std::filesystem::create_symlink(folder_.file("target.exr"), folder_.file("link.exr"));
  EXPECT_EQ(render(folder_.file("link.exr")).exitCode, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.file("link.exr")));
  EXPECT_EQ(readBack(folder_.file("target.exr")).channels.size(), 5U);
}

}  // namespace
}  // namespace drevintool::testing
