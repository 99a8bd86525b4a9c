#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <system_error>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;

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

  void expectFour(const std::string& output, const std::vector<std::string>& pieces,
                  const RunOptions& options = {}) const {
    expectRefused(renderArguments(input_, output), 4, pieces, options);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

// Of another process: that one may still write there.
TEST_F(OutputFaults, placeOfAnotherProcesssOpenFile_isRefused) {
  const std::string place = "/proc/" + std::to_string(getpid()) + "/fd/1";
  const RunResult result =
      runCommand(renderArguments(input_, folder_.file("o.exr"), {"--report", place}));
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find(place + ": is open already"), std::string::npos) << result.error;
  EXPECT_FALSE(fs::exists(folder_.file("o.exr")));
}

TEST_F(OutputFaults, standardOutputThatIsOpenForReading_isFour) {
  RunOptions options;
  options.inChild = [] { dup2(open("/dev/null", O_RDONLY), STDOUT_FILENO); };
  expectRefused(renderArguments(input_, folder_.file("o.exr"), {"--report", "/dev/stdout"}), 4,
                {"/dev/stdout", "not open for writing"}, options);
  EXPECT_FALSE(fs::exists(folder_.file("o.exr")));
}

// The picture must take some time to write.
// On a busy machine the picture may be there before its folder is seen to have anything in it.
TEST_F(OutputFaults, folderThatIsRemovedMeanwhile_isToldAsThat) {
  constexpr int kAttempts = 8;
  const std::string place = folder_.file("gone");
  PartFixture part = noisyPart();
  part.display = part.data = Imath::Box2i({0, 0}, {1199, 899});
  writeExrFixture(input_, part);
  RunOptions options;
  options.signal = SIGURG;  // nothing to anyone
  options.signalWhen = [&] {
    std::error_code error;
    if (!fs::exists(place, error) || fs::is_empty(place, error)) return false;
    fs::remove_all(place, error);
    return true;
  };
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    fs::create_directory(place);
    const RunResult result = runCommand(
        renderArguments(input_, place + "/o.exr", {"--set", "bokehChannels=none"}), options);
    if (result.exitCode == 0) continue;
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find("removed while it was written"), std::string::npos) << result.error;
    return;
  }
  FAIL() << "always whole before it was removed";
}

// Error lines are files too, and need some of the room.
constexpr std::size_t kLeastRoom = 512;

TEST_F(OutputFaults, noRoomForTheFile_isFourAndTheOldOneStands) {
  for (const char* name : {"out.exr", "out.png"}) {
    const std::string output = folder_.file(name);
    ASSERT_EQ(render(output).exitCode, 0);
    const std::size_t whole = fs::file_size(output);
    fs::remove(output);
    RunOptions options;
    for (std::size_t room = kLeastRoom; room < whole; room += whole / 12) {
      options.fileSize = room;
      expectFour(output, {output, "File too large"}, options);
    }
    options.fileSize = whole - 1;
    expectFour(output, {output, "File too large"}, options);
    options.fileSize = whole;
    EXPECT_EQ(render(output, options).exitCode, 0);
    fs::remove(output);
  }
}

TEST_F(OutputFaults, noRoomForTheReport_isFour) {
  RunOptions options;
  options.fileSize = kLeastRoom;
  const RunResult result =
      runCommand(renderArguments(input_, folder_.file("out.png"),
                                 {"--region", "0,0,1,1", "--report", folder_.file("report.json")}),
                 options);
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "out.png"}));
}

TEST_F(OutputFaults, directoryOrDevice_isFour) {
  fs::create_directory(folder_.file("dir.exr"));
  fs::create_symlink("/dev/full", folder_.file("full.exr"));
  fs::create_symlink("loop.exr", folder_.file("loop.exr"));
  for (const char* name : {"dir.exr", "full.exr", "loop.exr"}) {
    const RunResult result = render(folder_.file(name));
    EXPECT_EQ(result.exitCode, 4) << name;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
  EXPECT_TRUE(fs::is_character_file(folder_.file("full.exr")));
}

TEST_F(OutputFaults, missingFolder_isFour) {
  expectFour(folder_.file("no/out.exr"), {"no/out.exr", "folder does not exist"});
}

TEST_F(OutputFaults, folderThatMayNotBeWritten_isFour) {
  if (!canRunUnprivileged()) GTEST_SKIP() << "the build cannot be run by the user nobody";
  fs::permissions(folder_.path(), fs::perms(0755));
  fs::create_directory(folder_.file("shut"));
  writeBytes(folder_.file("shut/out.exr"), "old");
  fs::permissions(folder_.file("shut"), fs::perms(0555));
  RunOptions options;
  options.unprivileged = true;
  const RunResult result = render(folder_.file("shut/out.exr"), options);
  EXPECT_EQ(result.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("Permission denied"), std::string::npos) << result.error;
  EXPECT_EQ(bytesOfFile(folder_.file("shut/out.exr")), "old");
  fs::permissions(folder_.file("shut"), fs::perms(0755));
}

TEST_F(OutputFaults, outputOverTheInput_isWritten) {
  const RunResult result = render(input_);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(input_).channels.at("R").type, Imf::FLOAT);
}

TEST_F(OutputFaults, noRoomOverTheInput_leavesTheInput) {
  const std::string before = bytesOfFile(input_);
  RunOptions options;
  options.fileSize = 2000;
  EXPECT_EQ(render(input_, options).exitCode, 4);
  EXPECT_TRUE(bytesOfFile(input_) == before);
  EXPECT_EQ(folder_.entries(), std::vector<std::string>{"in.exr"});
}

TEST_F(OutputFaults, symbolicLink_isFollowed) {
  fs::create_symlink(folder_.file("target.exr"), folder_.file("link.exr"));
  EXPECT_EQ(render(folder_.file("link.exr")).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(folder_.file("link.exr")));
  EXPECT_EQ(readBack(folder_.file("target.exr")).channels.size(), 5U);
}

}  // namespace
}  // namespace drevintool::testing
