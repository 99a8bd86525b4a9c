#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool::testing {
namespace {

/// Channels that are many, long, spelled in no encoding, or not there.
class ChannelFaults : public ::testing::Test {
 protected:
  ReadFile render(const PartFixture& part, const std::vector<std::string>& more = {}) const {
    writeExrFixture(input_, part);
    const RunResult result = runCommand(renderArguments(input_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  void expectRefusedWith(const std::vector<std::string>& more,
                         const std::vector<std::string>& pieces) const {
    expectRefused(renderArguments(input_, output_, more), 3, pieces);
  }

  // Makes the name in the channel list longer; the list and the table of blocks stay in step.
  void lengthenName(const std::string& name, std::size_t bytes) const {
    std::string file = bytesOfFile(input_);
    const std::size_t table = scanExrHeader(input_).headersEnd;
    add(file, table, bytes);
    const std::string key("channels\0chlist\0", 16);
    add(file, file.find(key) + key.size(), bytes);
    file.insert(file.find(name), std::string(bytes, name.front()));
    writeBytes(input_, file);
  }

  static void add(std::string& file, std::size_t place, std::size_t amount) {
    std::uint32_t number = 0;
    std::memcpy(&number, file.data() + place, sizeof number);
    number += static_cast<std::uint32_t>(amount);
    std::memcpy(file.data() + place, &number, sizeof number);
  }

  static PartFixture withoutDepth() {
    PartFixture part = rgbazPart(16, 12, 100.0);
    part.channels.pop_back();
    return part;
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(ChannelFaults, noDepth_saysWhatThereIsAndTheRemedy) {
  writeExrFixture(input_, withoutDepth());
  expectRefusedWith({}, {input_, "no depth channel depth.Z", "--set depthChannel=", "A, B, G, R"});
}

TEST_F(ChannelFaults, depthOfAnotherName_isSuggestedAndCanBeChosen) {
  PartFixture part = withoutDepth();
  part.channels.push_back({"Depth", Imf::FLOAT, [](int, int) { return 100.0; }});
  writeExrFixture(input_, part);
  expectRefusedWith({}, {input_, "--set depthChannel=", "Depth"});
  const RunResult result =
      runCommand(renderArguments(input_, output_, {"--set", "depthChannel=Depth"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
}

TEST_F(ChannelFaults, depthThatThereIsNot_isRefusedWithWhatThereIs) {
  writeExrFixture(input_, rgbazPart(16, 12, 100.0));
  expectRefusedWith({"--set", "depthChannel=depth.W"}, {input_, "depth.W", "A, B, G, R, Z"});
}

TEST_F(ChannelFaults, depthInAPartWithAnotherWindow_isTaken) {
  PartFixture colour = withoutDepth();
  PartFixture depth = rgbazPart(16, 12, 100.0);
  depth.channels = {depth.channels.back()};
  depth.data = Imath::Box2i({4, 4}, {19, 15});
  colour.name = "colour";
  depth.name = "depth";
  writeMultiPartFixture(input_, {colour, depth});
  const RunResult result = runCommand(renderArguments(input_, output_));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(readBack(output_).data, Imath::Box2i({0, 0}, {19, 15}));
}

TEST_F(ChannelFaults, channelsThatThereAreNot_areNamed) {
  writeExrFixture(input_, rgbazPart(16, 12, 100.0));
  expectRefusedWith({"--channels", "R,nonsense"}, {input_, "nonsense", "A, B, G, R, Z"});
}

TEST_F(ChannelFaults, moreChannelsThanTheHostCounts_areAllWritten) {
  PartFixture part = rgbazPart(4, 3, 100.0);
  for (int number = 0; number < 1024; ++number) {
    part.channels.push_back({"layer" + std::to_string(number) + ".x", Imf::HALF,
                             [number](int x, int y) { return number + x + 4 * y; }});
  }
  const ReadFile result = render(part);
  EXPECT_EQ(result.channels.size(), 1029U);
  for (const int number : {0, 500, 1015, 1023})
    EXPECT_EQ(result.value("layer" + std::to_string(number) + ".x", 3, 2), number + 11.0);
}

TEST_F(ChannelFaults, longestName_isKept) {
  PartFixture part = rgbazPart(4, 3, 100.0);
  const std::string name = "long." + std::string(250, 'n');
  part.channels.push_back({name, Imf::HALF, [](int, int) { return 0.25; }});
  EXPECT_EQ(render(part).value(name, 0, 0), 0.25);
}

// Names of more than 255 bytes are against the format.
TEST_F(ChannelFaults, nameThatIsTooLong_isRefused) {
  PartFixture part = rgbazPart(4, 3, 100.0);
  const std::string name(255, 'n');
  part.channels.push_back({name, Imf::HALF, [](int, int) { return 0.25; }});
  writeExrFixture(input_, part);
  lengthenName(name, 45);
  expectRefusedWith({}, {input_});
}

TEST_F(ChannelFaults, nameThatIsNoUtf8_isKeptByteForByte) {
  PartFixture part = rgbazPart(4, 3, 100.0);
  const std::string name = "l\xe4yer.\xff\xfe";
  part.channels.push_back({name, Imf::HALF, [](int, int) { return 0.25; }});
  const std::string report = folder_.file("report.json");
  EXPECT_EQ(render(part, {"--report", report}).value(name, 0, 0), 0.25);
  EXPECT_NE(bytesOfFile(report), "");
}

TEST_F(ChannelFaults, nameThatIsNoUtf8_isShownWithQuestionMarks) {
  PartFixture part = rgbazPart(4, 3, 100.0);
  part.channels.push_back({"b\xc3\x28\x1b[31m", Imf::HALF, [](int, int) { return 0.25; }});
  writeExrFixture(input_, part);
  expectRefusedWith({"--channels", "none.such"}, {"b?(?[31m"});
}

}  // namespace
}  // namespace drevintool::testing
