#include "picture/FlatChunks.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <random>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"
#include "picture/ExrHeaderScan.h"
#include "picture/ExrReader.h"

namespace drevintool::testing {
namespace {

using Pieces = std::vector<std::string>;

constexpr std::array<Imf::Compression, 10> kCompressions = {
    Imf::NO_COMPRESSION,   Imf::RLE_COMPRESSION,   Imf::ZIPS_COMPRESSION, Imf::ZIP_COMPRESSION,
    Imf::PIZ_COMPRESSION,  Imf::PXR24_COMPRESSION, Imf::B44_COMPRESSION,  Imf::B44A_COMPRESSION,
    Imf::DWAA_COMPRESSION, Imf::DWAB_COMPRESSION};

// The blocks of a picture of 12000 x 8000 pixels with a half and a float take 576 MB.
constexpr int kClaimedWidth = 12000;
constexpr int kClaimedHeight = 8000;

std::string littleEndian(std::uint64_t value, std::size_t bytes) {
  return {reinterpret_cast<const char*>(&value), bytes};
}

std::string noise(std::size_t count) {
  std::mt19937 numbers(7);
  std::string bytes(count, '\0');
  for (char& byte : bytes)
    byte = static_cast<char>(numbers());
  return bytes;
}

/// What the blocks of flat parts say of themselves.
class FlatChunks : public ::testing::Test {
 protected:
  FlatChunks() { writeExrFixture(good_, rgbazPart(16, 12, 100.0)); }

  // The header of a picture that claims to be large, with nothing behind it.
  std::string claimingHeader(Imf::Compression compression, int tileSize = 0) const {
    PartFixture part = rgbazPart(16, 12, 1.0);
    part.channels = {{"R", Imf::HALF, [](int, int) { return 0.0; }},
                     {"Z", Imf::FLOAT, [](int, int) { return 0.0; }}};
    part.compression = compression;
    part.tileSize = tileSize;
    writeExrFixture(file_, part);
    const std::array<std::int32_t, 4> corners = {0, 0, kClaimedWidth - 1, kClaimedHeight - 1};
    std::string bytes = bytesOfFile(file_).substr(0, scanExrHeader(file_).headersEnd);
    for (const char* name : {"dataWindow", "displayWindow"}) {
      const std::string key = name + std::string("\0box2i\0\x10\0\0\0", 11);
      bytes.replace(bytes.find(key) + key.size(), 16, reinterpret_cast<const char*>(corners.data()),
                    16);
    }
    return bytes;
  }

  // Refused on each way in, with little time and memory.
  void expectCheapRefusal(const Pieces& pieces) const {
    Pieces all = pieces;
    all.push_back(file_);
    expectRefused(renderArguments(file_, output_), 3, all);
    expectRefused(renderArguments(good_, output_, {"--kernel", file_}), 3, all);
    expectRefused(renderArguments(good_, output_, {"--mattes", file_}), 3, all);
    const RunResult result = runCommand({"inspect", "--plugin", builtPlugin(), file_});
    EXPECT_EQ(result.exitCode, 3) << result.error;
    for (const std::string& piece : all)
      EXPECT_NE(result.error.find(piece), std::string::npos) << result.error;
    EXPECT_LT(result.processorSeconds, DREVIN_SANITIZED ? 20.0 : 1.0);
    EXPECT_LT(result.peakKibibytes, DREVIN_SANITIZED ? 2 << 20 : 200 << 10);
  }

  void expectRefusal(const Pieces& pieces) const {
    expectRefused(renderArguments(file_, output_), 3, pieces);
  }

  // A scanline file of four blocks, with noise that no compression makes smaller.
  void writeFourBlocks(Imf::Compression compression = Imf::ZIP_COMPRESSION) const {
    PartFixture part = rgbazPart(40, 60, 5.0);
    part.compression = compression;
    part.channels[0].value = [](int x, int y) { return (x * 7919 + y * 104729) % 1009; };
    writeExrFixture(file_, part);
  }

  void setTableEntry(std::size_t block, std::uint64_t offset) const {
    std::string bytes = bytesOfFile(file_);
    bytes.replace(scanExrHeader(file_).headersEnd + 8 * block, 8, littleEndian(offset, 8));
    writeBytes(file_, bytes);
  }

  ScratchFolder folder_;
  std::string good_ = folder_.file("good.exr");
  std::string file_ = folder_.file("bad.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(FlatChunks, fewBytesThatClaimAGiantPicture_areRefusedCheaply) {
  for (const Imf::Compression compression : kCompressions) {
    writeBytes(file_, claimingHeader(compression) + std::string(4000, '\0'));
    expectCheapRefusal({"damaged or unfinished"});
  }
  writeBytes(file_, claimingHeader(Imf::PIZ_COMPRESSION, 4000) + std::string(400, '\0'));
  expectCheapRefusal({"damaged or unfinished"});
}

// As many bytes as the compression needs at least, so that only the blocks tell.
TEST_F(FlatChunks, noiseThatClaimsAGiantPicture_isRefusedCheaply) {
  const std::vector<std::pair<Imf::Compression, std::size_t>> cases = {
      {Imf::ZIP_COMPRESSION, 600000},
      {Imf::PIZ_COMPRESSION, 1300000},
      {Imf::DWAA_COMPRESSION, 20000}};
  for (const auto& [compression, size] : cases) {
    writeBytes(file_, claimingHeader(compression) + noise(size));
    expectCheapRefusal({"block 1 of", "outside the file"});
    writeBytes(file_, claimingHeader(compression) + std::string(size, '\0'));
    expectCheapRefusal({"block 1 of", "is missing: the file is unfinished"});
  }
  writeBytes(file_, claimingHeader(Imf::PIZ_COMPRESSION, 4000) + noise(1300000));
  expectCheapRefusal({"block 1 of 6", "outside the file"});
}

// A giant picture in blocks of 16 rows: the first and the last ones whole, noise between them.
class NoiseBlocks : public FlatChunks {
 protected:
  static constexpr std::size_t kRows = 16;
  static constexpr std::size_t kBlocks = kClaimedHeight / kRows;

  // The packed content of a block of zeros.
  std::string wholeBlock() const {
    PartFixture part = rgbazPart(kClaimedWidth, kRows, 1.0);
    part.channels = {{"R", Imf::HALF, [](int, int) { return 0.0; }},
                     {"Z", Imf::FLOAT, [](int, int) { return 0.0; }}};
    part.compression = Imf::ZIP_COMPRESSION;
    writeExrFixture(file_, part);
    const std::string bytes = bytesOfFile(file_);
    return bytes.substr(scanExrHeader(file_).headersEnd + 8 + 8);
  }

  void write(std::size_t wholeAtTop, std::size_t wholeAtBottom) const {
    std::string table;
    std::string blocks;
    const std::string whole = wholeBlock();
    const std::string header = claimingHeader(Imf::ZIP_COMPRESSION);
    const std::string spoilt = noise(1200);
    for (std::size_t block = 0; block < kBlocks; ++block) {
      const bool good = block < wholeAtTop || block >= kBlocks - wholeAtBottom;
      const std::string& content = good ? whole : spoilt;
      table += littleEndian(header.size() + 8 * kBlocks + blocks.size(), 8);
      blocks += littleEndian(block * kRows, 4) + littleEndian(content.size(), 4) + content;
    }
    writeBytes(file_, header + table + blocks);
  }
};

TEST_F(NoiseBlocks, noiseAlone_isRefusedCheaply) {
  write(0, 0);
  expectCheapRefusal({});
}

TEST_F(NoiseBlocks, wholeBlocksAtTheTop_costNoMemoryForTheRest) {
  for (const std::size_t whole : {1, 100}) {
    write(whole, 0);
    expectCheapRefusal({});
  }
}

TEST_F(NoiseBlocks, wholeBlocksAtBothEnds_costNoMemoryForTheRest) {
  write(1, 1);
  expectCheapRefusal({});
  write(16, 16);
  expectCheapRefusal({});
}

TEST_F(FlatChunks, missingBlock_isNumbered) {
  writeFourBlocks();
  setTableEntry(2, 0);
  expectRefusal({file_, "block 3 of 4 is missing: the file is unfinished"});
}

TEST_F(FlatChunks, blockOutsideTheFile_isNumbered) {
  writeFourBlocks();
  for (const std::uint64_t offset : {std::uint64_t{1}, std::uint64_t{1} << 40, ~std::uint64_t{0}}) {
    setTableEntry(1, offset);
    expectRefusal({file_, "block 2 of 4 lies outside the file"});
  }
}

TEST_F(FlatChunks, blockOfOtherRows_isNumbered) {
  writeFourBlocks();
  damageBlock(file_, 1, 0, littleEndian(32, 4));
  expectRefusal({file_, "block 2 of 4", "another place"});
}

TEST_F(FlatChunks, tileOfAnotherPlaceOrLevel_isNumbered) {
  for (const std::size_t number :
       {std::size_t{0}, std::size_t{4}, std::size_t{8}, std::size_t{12}}) {
    PartFixture part = rgbazPart(40, 30, 5.0);
    part.tileSize = 16;
    part.mipMaps = true;
    writeExrFixture(file_, part);
    damageBlock(file_, 4, number, littleEndian(7, 4));
    expectRefusal({file_, "block 5 of 6", "another place"});
  }
}

TEST_F(FlatChunks, sizesThatLie_areNumbered) {
  constexpr std::uint64_t kWholeBlock = std::uint64_t{40} * 16 * 12;
  for (const std::uint64_t size : {std::uint64_t{0}, kWholeBlock + 1}) {
    writeFourBlocks();
    writeBytes(file_, bytesOfFile(file_) + std::string(kWholeBlock, '\0'));
    damageBlock(file_, 0, 4, littleEndian(size, 4));
    expectRefusal({file_, "block 1 of 4 is damaged", "size"});
  }
  for (const std::uint64_t size : {0x7fffffffU, 0xffffffffU, 0x80000000U}) {
    writeFourBlocks();
    damageBlock(file_, 0, 4, littleEndian(size, 4));
    expectRefusal({file_, "block 1 of 4 ends outside the file"});
  }
}

TEST_F(FlatChunks, tooFewBytesWithoutCompression_areNumbered) {
  writeFourBlocks(Imf::NO_COMPRESSION);
  damageBlock(file_, 59, 4, littleEndian(40 * 12 - 1, 4));
  expectRefusal({file_, "block 60 of 60 is damaged", "size"});
}

TEST_F(FlatChunks, blocksThatShareBytes_areRefused) {
  PartFixture part = rgbazPart(40, 60, 5.0);
  writeExrFixture(file_, part);
  const std::string bytes = bytesOfFile(file_);
  std::uint64_t first = 0;
  std::memcpy(&first, bytes.data() + scanExrHeader(file_).headersEnd, sizeof first);
  std::int32_t size = 0;
  std::memcpy(&size, bytes.data() + first + 4, sizeof size);
  damageBlock(file_, 0, 4, littleEndian(static_cast<std::uint64_t>(size) + 9, 4));
  expectRefusal({file_, "damaged", "same bytes"});
}

TEST_F(FlatChunks, faultInTheSecondPart_isFound) {
  PartFixture first = rgbazPart(40, 60, 5.0);
  PartFixture second = first;
  first.name = "one";
  second.name = "two";
  writeMultiPartFixture(file_, {first, second});
  ASSERT_EQ(runCommand(renderArguments(file_, output_)).exitCode, 0);
  setTableEntry(4 + 3, 0);
  expectRefusal({file_, "block 4 of 4 is missing"});
}

// Nothing packs better than one value everywhere: what a compression is said to reach must hold.
TEST_F(FlatChunks, uniformPictures_areReadInEveryCompression) {
  for (const Imf::Compression compression : kCompressions) {
    for (const double value : {0.0, 1.0}) {
      for (const int tileSize : {0, 256}) {
        PartFixture part = rgbazPart(512, 300, value);
        for (ChannelFixture& channel : part.channels)
          channel.value = [value](int, int) { return value; };
        part.channels.push_back({"id", Imf::UINT, [](int, int) { return 0.0; }});
        part.compression = compression;
        part.tileSize = tileSize;
        writeExrFixture(file_, part);
        EXPECT_NO_THROW(readExr(file_)) << compression << " " << value << " " << tileSize;
      }
    }
  }
}

TEST_F(FlatChunks, oddWindowsAndLevels_areRead) {
  for (const int tileSize : {0, 7, 64}) {
    PartFixture part = rgbazPart(33, 21, 2.0);
    part.data = Imath::Box2i({-5, -9}, {40, 17});
    part.tileSize = tileSize;
    part.mipMaps = tileSize > 0;
    writeExrFixture(file_, part);
    EXPECT_EQ(readExr(file_).box.area(), 46U * 27U) << tileSize;
  }
}

}  // namespace
}  // namespace drevintool::testing
