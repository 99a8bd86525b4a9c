#include <gtest/gtest.h>

#include <cstdint>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"
#include "deep/DeepBandPlan.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool::testing {
namespace {

using Arguments = std::vector<std::string>;
using Pieces = std::vector<std::string>;

// Places in the head of a scanline block, after its row.
constexpr std::size_t kUnpackedSize = 20;
constexpr std::size_t kCounts = 28;

class DeepFaults : public ::testing::Test {
 protected:
  void writeDeep(const DeepPartFixture& part) const { writeDeepFixture(deep_, {part}); }

  // Rows with three samples in a pixel, so that blocks have something to damage.
  static DeepPartFixture manySamples(Imf::Compression compression) {
    DeepPartFixture part = opaqueDeepPart(24, 200, 0.0);
    part.compression = compression;
    part.samples = [](int x, int y) {
      DeepPixelFixture pixel;
      for (int i = 0; i < 3; ++i)
        pixel.push_back({0.5, (x % 7) / 16.0, (y % 5) / 8.0, 0.25, 90.0 + 3.0 * i + 0.01 * x * y});
      return pixel;
    };
    return part;
  }

  static void expectFault(const Arguments& arguments, const Pieces& pieces) {
    RunOptions options;
    options.addressSpace = kGibibyteOfAddresses;
    expectRefused(arguments, 3, pieces, options);
  }

  void expectDeepFault(const Pieces& pieces, const Arguments& more = {}) const {
    expectFault(deepArguments(deep_, output_, more), pieces);
  }

  static std::string littleEndian(std::uint64_t value, std::size_t bytes) {
    return {reinterpret_cast<const char*>(&value), bytes};
  }

  ScratchFolder folder_;
  std::string deep_ = folder_.file("deep.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(DeepFaults, flatFileAsDeep_isSentToInput) {
  writeExrFixture(deep_, rgbazPart(8, 6, 1.0));
  expectDeepFault({deep_, "no deep image", "--input"});
}

TEST_F(DeepFaults, deepFileAsFlat_isSentToDeep) {
  writeDeep(opaqueDeepPart(8, 6, 1.0));
  expectFault(renderArguments(deep_, output_), {deep_, "only deep", "--deep"});
  writeExrFixture(folder_.file("flat.exr"), rgbazPart(8, 6, 1.0));
  for (const char* option : {"--kernel", "--mattes"}) {
    expectFault(renderArguments(folder_.file("flat.exr"), output_, {option, deep_}),
                {deep_, "only deep"});
  }
}

TEST_F(DeepFaults, flatAndDeepOfOtherSizes_areBothNamed) {
  writeDeep(opaqueDeepPart(8, 6, 1.0));
  writeExrFixture(folder_.file("flat.exr"), rgbazPart(9, 6, 1.0));
  expectDeepFault({deep_ + " is 8 x 6", folder_.file("flat.exr") + " is 9 x 6"},
                  {"--input", folder_.file("flat.exr")});
}

TEST_F(DeepFaults, unknownPartAndView_listWhatThereIs) {
  DeepPartFixture part = opaqueDeepPart(8, 6, 1.0);
  part.name = "rgba.left";
  part.view = "left";
  writeDeep(part);
  expectDeepFault({deep_, "no deep part smoke", "rgba.left (view left)"}, {"--deep-part", "smoke"});
  expectDeepFault({deep_, "of view right", "rgba.left (view left)"}, {"--view", "right"});
}

TEST_F(DeepFaults, fileWithoutDepth_saysWhatItHas) {
  DeepPartFixture part = opaqueDeepPart(8, 6, 1.0);
  part.channels.back().name = "depth";
  writeDeep(part);
  expectDeepFault({deep_, "no depth channel Z", "A, B, G, R, depth"});
}

TEST_F(DeepFaults, channelsThatThereAreNot_areNamed) {
  writeDeep(opaqueDeepPart(8, 6, 1.0));
  expectDeepFault({deep_, "velocity.x", "R, G, B, A"}, {"--channels", "velocity.x"});
}

TEST_F(DeepFaults, truncatedFile_isUnfinished) {
  writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
  const std::string whole = bytesOfFile(deep_);
  for (const std::size_t length :
       {std::size_t{3}, std::size_t{100}, std::size_t{700}, whole.size() / 2, whole.size() - 1}) {
    writeBytes(deep_, whole.substr(0, length));
    expectDeepFault({deep_});
  }
}

TEST_F(DeepFaults, blockThatIsMissing_isNumbered) {
  writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
  std::string bytes = bytesOfFile(deep_);
  bytes.replace(scanExrHeader(deep_).headersEnd + 8 * 17, 8, std::string(8, '\0'));
  writeBytes(deep_, bytes);
  expectDeepFault({deep_, "block 18 of 200 is missing"});
}

TEST_F(DeepFaults, blockOfAnotherRow_isDamaged) {
  writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
  damageBlock(deep_, 17, 0, littleEndian(18, 4));
  expectDeepFault({deep_, "block 18 of 200", "another place"});
}

TEST_F(DeepFaults, tileOfAnotherPlace_isDamaged) {
  DeepPartFixture part = manySamples(Imf::ZIPS_COMPRESSION);
  part.tileWidth = part.tileHeight = 32;
  writeDeep(part);
  damageBlock(deep_, 3, 4, littleEndian(5, 4));
  expectDeepFault({deep_, "block 4 of 7", "another place"});
}

TEST_F(DeepFaults, sizesThatLie_areDamage) {
  for (const std::uint64_t size :
       {std::uint64_t{0x7fffffff}, std::uint64_t{1} << 40, ~std::uint64_t{0}, std::uint64_t{13}}) {
    writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
    damageBlock(deep_, 60, kUnpackedSize, littleEndian(size, 8));
    expectDeepFault({deep_, "block 61 of 200", "damaged"});
  }
  for (const std::size_t place : {std::size_t{4}, std::size_t{12}}) {
    writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
    damageBlock(deep_, 60, place, littleEndian(0x7ffffff0, 8));
    expectDeepFault({deep_, "block 61 of 200", "outside the file"});
  }
}

// What follows shows only when rows are read.

TEST_F(DeepFaults, samplesThatCannotBeUnpacked_areDamage) {
  writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
  damageBlock(deep_, 100, kCounts + 30, std::string(40, '\x7f'));
  expectDeepFault({deep_});
  expectDeepFault({deep_}, {"--threads", "5"});
}

TEST_F(DeepFaults, tileThatCannotBeUnpacked_isDamage) {
  DeepPartFixture part = manySamples(Imf::ZIPS_COMPRESSION);
  part.tileWidth = part.tileHeight = 16;
  writeDeep(part);
  damageBlock(deep_, 9, 40 + 60, std::string(40, '\x7f'));
  expectDeepFault({deep_});
}

TEST_F(DeepFaults, countsThatContradictTheirBlock_areDamage) {
  writeDeep(manySamples(Imf::NO_COMPRESSION));
  // Counts add up along the row: the last of 24 pixels ends at 72 samples.
  damageBlock(deep_, 100, kCounts + 4 * 23, littleEndian(73, 4));
  expectDeepFault({deep_, "876 bytes"});
}

TEST_F(DeepFaults, countsBelowThoseOfTheirBlock_areDamage) {
  writeDeep(manySamples(Imf::NO_COMPRESSION));
  damageBlock(deep_, 100, kCounts + 4 * 23, littleEndian(71, 4));
  expectDeepFault({deep_, "damaged", "announce 4608 samples", "have 4607"});
}

TEST_F(DeepFaults, countsThatFall_areDamage) {
  writeDeep(manySamples(Imf::NO_COMPRESSION));
  damageBlock(deep_, 100, kCounts + 4 * 7, littleEndian(2, 4));
  expectDeepFault({deep_});
}

TEST_F(DeepFaults, negativeAndHugeCounts_areDamage) {
  for (const std::uint64_t count : {0xffffffffU, 0x80000000U, 0x7fffffffU}) {
    writeDeep(manySamples(Imf::NO_COMPRESSION));
    damageBlock(deep_, 100, kCounts, littleEndian(count, 4));
    expectDeepFault({deep_});
  }
}

TEST_F(DeepFaults, pixelWithTooManySamples_isNamedWithItsNumber) {
  DeepPartFixture part = opaqueDeepPart(5, 3, 1.0);
  part.samples = [](int x, int y) {
    const std::size_t count = x == 2 && y == 1 ? kMostPixelSamples + 1 : 1;
    return DeepPixelFixture(count, {1.0, 0.0, 0.0, 0.0, 1.0});
  };
  writeDeep(part);
  expectDeepFault({deep_, "pixel 2,1", "65537", "65536"});
}

TEST_F(DeepFaults, pixelWithTooManyThickSamples_isNamedWithTheirNumber) {
  for (const double thickness : {0.0, 1.0}) {
    DeepPartFixture part = opaqueDeepPart(5, 3, 1.0);
    part.channels = {{"A", Imf::HALF}, {"Z", Imf::FLOAT}, {"ZBack", Imf::FLOAT}};
    part.samples = [thickness](int x, int y) {
      const std::size_t count = x == 2 && y == 1 ? kMostThickSamples + 1 : 1;
      return DeepPixelFixture(count, {0.0, 100.0, 100.0 + thickness});
    };
    writeDeep(part);
    if (thickness > 0.0) {
      expectDeepFault({deep_, "pixel 2,1", "2049 thick samples", "2048"});
    } else {
      const RunResult result = runCommand(deepArguments(deep_, output_));
      EXPECT_EQ(result.exitCode, 0) << "points are no load: " << result.error;
    }
  }
}

TEST_F(DeepFaults, headersThatLie_areRefusedBeforeAllocating) {
  const std::string key("dataWindow\0box2i\0", 17);
  const std::vector<std::vector<std::int32_t>> windows = {{0, 0, 2147483646, 2147483646},
                                                          {3, 0, 0, 2},
                                                          {0, 0, 131071, 131071},
                                                          {1000000000, 0, 1000000003, 2},
                                                          {0, 0, 23, 100000}};
  for (const std::vector<std::int32_t>& window : windows) {
    writeDeep(manySamples(Imf::ZIPS_COMPRESSION));
    std::string bytes = bytesOfFile(deep_);
    bytes.replace(bytes.find(key) + key.size() + 4, 16,
                  std::string(reinterpret_cast<const char*>(window.data()), 16));
    writeBytes(deep_, bytes);
    expectDeepFault({deep_});
  }
}

TEST_F(DeepFaults, tilesThatAreTooLarge_areRefused) {
  DeepPartFixture part = manySamples(Imf::ZIPS_COMPRESSION);
  part.tileWidth = part.tileHeight = 32;
  writeDeep(part);
  const std::string key("tiles\0tiledesc\0", 15);
  std::string bytes = bytesOfFile(deep_);
  bytes.replace(bytes.find(key) + key.size() + 4, 8, littleEndian(0x0001000000010000, 8));
  writeBytes(deep_, bytes);
  expectDeepFault({deep_, "tiles of 65536 x 65536"});
}

TEST_F(DeepFaults, usage_isTwoAndNamesTheChoices) {
  const Arguments flat = renderArguments("in.exr", output_);
  const auto error = [&](Arguments arguments, const Arguments& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    const RunResult result = runCommand(arguments);
    EXPECT_EQ(result.exitCode, 2) << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    return result.error;
  };
  for (const char* option : {"--deep-part", "--view", "--deep-order"})
    EXPECT_NE(error(flat, {option, "far-first"}).find(option), std::string::npos);
  EXPECT_NE(error(deepArguments(deep_, output_), {"--deep-order", "front"})
                .find("near-first or far-first"),
            std::string::npos);
}

}  // namespace
}  // namespace drevintool::testing
