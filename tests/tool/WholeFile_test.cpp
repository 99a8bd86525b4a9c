#include "sequence/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "RealPictures.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

class WholeFile : public ::testing::Test {
 protected:
  ScratchFolder folder_;
  std::string file_ = folder_.file("a.exr");
};

TEST_F(WholeFile, rowsOfOnePart_areWhole) {
  writeExrFixture(file_, rgbazPart(70, 50, 3.0));
  EXPECT_TRUE(isWholePicture(file_));
}

TEST_F(WholeFile, layoutsThatAreNoResult_areNotWhole) {
  PartFixture part = rgbazPart(70, 50, 3.0);
  part.tileSize = 16;
  writeExrFixture(file_, part);
  EXPECT_FALSE(isWholePicture(file_));
  part.tileSize = 0;
  part.name = "one";
  PartFixture other = part;
  other.name = "two";
  writeMultiPartFixture(file_, {part, other});
  EXPECT_FALSE(isWholePicture(file_));
}

TEST_F(WholeFile, cutFiles_areNotWhole) {
  writeExrFixture(file_, rgbazPart(70, 50, 3.0));
  const std::string bytes = bytesOfFile(file_);
  for (const std::size_t left :
       {std::size_t{0}, std::size_t{3}, std::size_t{100}, bytes.size() / 2, bytes.size() - 1}) {
    writeBytes(file_, bytes.substr(0, left));
    EXPECT_FALSE(isWholePicture(file_)) << left;
  }
}

TEST_F(WholeFile, tableWithAGap_isNotWhole) {
  writeExrFixture(file_, rgbazPart(70, 50, 3.0));
  std::string bytes = bytesOfFile(file_);
  // Four blocks of 16 rows: the header ends where the first entry of the table names what follows.
  const std::size_t table = [&] {
    for (std::size_t at = 0; at + 32 < bytes.size(); ++at) {
      const std::uint64_t offset = at + 32;
      if (std::memcmp(bytes.data() + at, &offset, sizeof offset) == 0) return at;
    }
    return std::size_t{0};
  }();
  ASSERT_GT(table, 0U);
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(table) + 8, 8, '\0');
  writeBytes(file_, bytes);
  EXPECT_FALSE(isWholePicture(file_));
}

TEST_F(WholeFile, whatIsNoPicture_isNotWhole) {
  EXPECT_FALSE(isWholePicture(""));
  EXPECT_FALSE(isWholePicture(file_));
  EXPECT_FALSE(isWholePicture(folder_.path()));
  writeBytes(file_, "no picture at all, but more than eight bytes");
  EXPECT_FALSE(isWholePicture(file_));
}

TEST_F(WholeFile, png_isWholeToItsEndMark) {
  writeExrFixture(file_, rgbazPart(20, 10, 3.0));
  const std::string png = folder_.file("a.png");
  ASSERT_EQ(runCommand(renderArguments(file_, png)).exitCode, 0);
  EXPECT_TRUE(isWholePicture(png));
  const std::string bytes = bytesOfFile(png);
  writeBytes(png, bytes.substr(0, bytes.size() - 1));
  EXPECT_FALSE(isWholePicture(png));
  writeBytes(png, "");
  EXPECT_FALSE(isWholePicture(png));
}

TEST_F(WholeFile, damagedRealFiles_endInAnAnswer) {
  SKIP_WITHOUT_PICTURES();
  const std::vector<std::string> files = filesIn("damaged");
  ASSERT_FALSE(files.empty());
  for (const std::string& file : files)
    static_cast<void>(isWholePicture(file));
  EXPECT_FALSE(isWholePicture(pictureFolder() + "/damaged/tiledDeepIncomplete.exr"));
}

}  // namespace
}  // namespace drevintool::testing
