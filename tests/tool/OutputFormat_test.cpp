#include <gtest/gtest.h>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

/// How results are stored, and what of the input's way of being stored they keep.
class OutputFormat : public ::testing::Test {
 protected:
  OutputFormat() { write(Imf::ZIP_COMPRESSION); }

  void write(Imf::Compression compression) const {
    PartFixture part = rgbazPart(24, 40, 140.0);
    part.compression = compression;
    part.channels.push_back({"mask.a", Imf::HALF, [](int x, int y) { return (x * 31 + y) / 7.0; }});
    part.channels.push_back({"P.x", Imf::FLOAT, [](int x, int y) { return x / 3.0 + y * 1e-5; }});
    writeExrFixture(input_, part);
  }

  ReadFile render(const std::vector<std::string>& more = {}) const {
    const RunResult result = runCommand(renderArguments(input_, output_, more));
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readBack(output_);
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(OutputFormat, compression_isTheInputsIfItKeepsBits) {
  const std::vector<std::pair<Imf::Compression, Imf::Compression>> expected = {
      {Imf::NO_COMPRESSION, Imf::NO_COMPRESSION},
      {Imf::PIZ_COMPRESSION, Imf::PIZ_COMPRESSION},
      {Imf::ZIPS_COMPRESSION, Imf::ZIPS_COMPRESSION},
      {Imf::B44_COMPRESSION, Imf::ZIP_COMPRESSION},
      {Imf::PXR24_COMPRESSION, Imf::ZIP_COMPRESSION},
      {Imf::DWAA_COMPRESSION, Imf::ZIP_COMPRESSION}};
  for (const auto& [before, after] : expected) {
    write(before);
    EXPECT_EQ(render().header.compression(), after) << before;
  }
}

// Lossy files are read once, and what comes out is what was read.
TEST_F(OutputFormat, channelsThatAreNotBlurred_keepTheBitsThatALossyFileGives) {
  for (const Imf::Compression before : {Imf::PXR24_COMPRESSION, Imf::B44_COMPRESSION}) {
    write(before);
    const ReadFile input = readBack(input_);
    const ReadFile result = render();
    for (const char* name : {"mask.a", "P.x", "Z"})
      EXPECT_EQ(result.channels.at(name).bits, input.channels.at(name).bits) << name;
  }
}

TEST_F(OutputFormat, compressionThatIsAskedFor_isTaken) {
  EXPECT_EQ(render({"--compression", "piz"}).header.compression(), Imf::PIZ_COMPRESSION);
  EXPECT_EQ(render({"--compression", "dwab"}).header.compression(), Imf::DWAB_COMPRESSION);
  EXPECT_EQ(render({"--compression", "none"}).header.compression(), Imf::NO_COMPRESSION);
}

TEST_F(OutputFormat, type_isOfBlurredChannelsAlone) {
  for (const char* type : {"float", "half", "keep"}) {
    const ReadFile result = render({"--type", type});
    const bool isFloat = std::string(type) == "float";
    EXPECT_EQ(result.channels.at("R").type, isFloat ? Imf::FLOAT : Imf::HALF) << type;
    EXPECT_EQ(result.channels.at("mask.a").type, Imf::HALF);
    EXPECT_EQ(result.channels.at("P.x").type, Imf::FLOAT);
  }
  EXPECT_EQ(render({"--type", "keep", "--set", "bokehChannels=all"}).channels.at("P.x").type,
            Imf::FLOAT);
}

TEST_F(OutputFormat, typeOfEveryChannel_isKeptUnlessAnotherIsAskedFor) {
  const ReadFile input = readBack(input_);
  for (const char* channels : {"rgba", "all"}) {
    const ReadFile result = render({"--set", std::string("bokehChannels=") + channels});
    for (const auto& [name, channel] : input.channels)
      EXPECT_EQ(result.channels.at(name).type, channel.type) << name << " " << channels;
  }
}

TEST_F(OutputFormat, halfResult_isTheFloatOneRounded) {
  const ReadFile whole = render({"--type", "float"});
  const ReadFile half = render({"--type", "half"});
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 24; ++x)
      ASSERT_NEAR(half.value("R", x, y), whole.value("R", x, y), 1.0 / 2048) << x << " " << y;
  }
}

TEST_F(OutputFormat, lightsBeyondHalf_becomeItsLargestValue) {
  PartFixture part = rgbazPart(9, 9, 100.0);
  part.channels[0].type = Imf::FLOAT;
  part.channels[0].value = [](int x, int) { return x == 4 ? 1e6 : -1e6; };
  writeExrFixture(input_, part);
  const ReadFile result = render({"--type", "half"});
  EXPECT_EQ(result.value("R", 4, 4), 65504.0);
  EXPECT_EQ(result.value("R", 0, 4), -65504.0);
}

TEST_F(OutputFormat, pixelAspect_isKept) {
  PartFixture part = rgbazPart(9, 9, 100.0);
  part.pixelAspect = 2.0F;
  writeExrFixture(input_, part);
  EXPECT_EQ(render().header.pixelAspectRatio(), 2.0F);
}

TEST_F(OutputFormat, typeAndCompressionOfAPng_areRefused) {
  const std::string png = folder_.file("out.PNG");
  expectRefused(renderArguments(input_, png, {"--type", "half"}), 2, {"--type: is for EXR", png});
  expectRefused(renderArguments(input_, png, {"--compression", "zip"}), 2,
                {"--compression: is for EXR", png});
}

TEST_F(OutputFormat, choicesThatThereAreNot_areTwo) {
  expectRefused(renderArguments(input_, output_, {"--compression", "lzw"}), 2,
                {"--compression lzw", "none, rle, zips, zip"});
  expectRefused(renderArguments(input_, output_, {"--type", "double"}), 2,
                {"--type double", "half, float or keep"});
}

}  // namespace
}  // namespace drevintool::testing
