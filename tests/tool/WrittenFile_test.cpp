#include "picture/WrittenFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "picture/ExrHeaderScan.h"
#include "picture/PngWriter.h"

namespace drevintool {
namespace {

using testing::bytesOfFile;
using testing::ScratchFolder;
using testing::writeBytes;

class WrittenFile : public ::testing::Test {
 protected:
  // Rows for three blocks of 16.
  void writeFlat(Imf::Compression compression = Imf::ZIP_COMPRESSION) const {
    testing::PartFixture part = testing::rgbazPart(9, 40, 2.0);
    part.compression = compression;
    testing::writeExrFixture(file_, part);
  }

  void writeOnePixelPng() const {
    OutputPicture picture;
    picture.box = {0, 0, 1, 1};
    picture.channels.push_back(
        {"R", "rgba.red", std::make_shared<std::vector<float>>(std::vector<float>{0.5F})});
    writePng(picture, file_);
  }

  // Every shorter file, and a longer one, must be found to be at fault.
  void expectOnlyWholeIsGood(std::string (*faultOf)(const std::string&)) const {
    const std::string whole = bytesOfFile(file_);
    EXPECT_EQ(faultOf(file_), "");
    for (std::size_t length = 0; length < whole.size(); ++length) {
      writeBytes(file_, whole.substr(0, length));
      ASSERT_NE(faultOf(file_), "") << length << " of " << whole.size();
    }
    writeBytes(file_, whole + "x");
    EXPECT_NE(faultOf(file_), "");
  }

  void setTableEntry(std::size_t block, std::uint64_t offset) const {
    std::string bytes = bytesOfFile(file_);
    const std::size_t at = scanExrHeader(file_).headersEnd + 8 * block;
    std::memcpy(bytes.data() + at, &offset, sizeof offset);
    writeBytes(file_, bytes);
  }

  ScratchFolder folder_;
  std::string file_ = folder_.file("written");
};

TEST_F(WrittenFile, everyCompression_isGood) {
  for (int compression = 0; compression <= Imf::DWAB_COMPRESSION; ++compression) {
    writeFlat(static_cast<Imf::Compression>(compression));
    EXPECT_EQ(faultOfWrittenExr(file_), "") << compression;
  }
}

TEST_F(WrittenFile, exrOfAnyOtherLength_isAtFault) {
  writeFlat();
  expectOnlyWholeIsGood(faultOfWrittenExr);
}

TEST_F(WrittenFile, deepExrOfAnyOtherLength_isAtFault) {
  testing::writeDeepFixture(file_, {testing::opaqueDeepPart(5, 4, 1.0)});
  expectOnlyWholeIsGood(faultOfWrittenExr);
}

TEST_F(WrittenFile, pngOfAnyOtherLength_isAtFault) {
  writeOnePixelPng();
  expectOnlyWholeIsGood(faultOfWrittenPng);
}

TEST_F(WrittenFile, blockThatIsNotInTheTable_isNumbered) {
  for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{8}, std::uint64_t{1} << 40}) {
    writeFlat();
    setTableEntry(1, offset);
    EXPECT_EQ(faultOfWrittenExr(file_), "block 2 is missing") << offset;
  }
}

TEST_F(WrittenFile, tableEntryOfAnotherBlock_isAtFault) {
  writeFlat();
  std::uint64_t first = 0;
  std::memcpy(&first, bytesOfFile(file_).data() + scanExrHeader(file_).headersEnd, sizeof first);
  setTableEntry(2, first);
  EXPECT_EQ(faultOfWrittenExr(file_), "block 3 stands for other rows");
}

TEST_F(WrittenFile, fileOfAnotherKind_isAtFault) {
  writeFlat();
  EXPECT_EQ(faultOfWrittenPng(file_), "its signature is wrong");
  writeOnePixelPng();
  EXPECT_NE(faultOfWrittenExr(file_), "");
}

}  // namespace
}  // namespace drevintool
