#include "picture/ExrWriter.h"

#include <OpenEXR/ImfStandardAttributes.h>
#include <OpenEXR/ImfStringAttribute.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <optional>

#include "ExrFixture.h"
#include "ScratchFolder.h"
#include "picture/ExrReader.h"
#include "picture/HeaderAttributes.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using testing::ReadFile;
using testing::ScratchFolder;

OutputPicture smallOutput() {
  OutputPicture picture;
  picture.display = {10, 20, 29, 39};
  picture.box = {-1, 2, 1, 4};
  picture.channels.push_back(
      {"R", "rgba.red", std::make_shared<std::vector<float>>(std::vector<float>{1, 2, 3, 4})});
  picture.channels.push_back({"m.half", "m.half",
                              std::make_shared<std::vector<std::uint16_t>>(
                                  std::vector<std::uint16_t>{0x7C01, 0xFE55, 1, 0x8000})});
  picture.channels.push_back(
      {"id", "other.id",
       std::make_shared<std::vector<std::uint32_t>>(std::vector<std::uint32_t>{7, 8, 9, ~0U})});
  return picture;
}

TEST(ExrWriter, windows_areTheInverseOfReading) {
  const ScratchFolder folder;
  writeExr(smallOutput(), folder.file("a.exr"));
  const ReadFile file = testing::readBack(folder.file("a.exr"));
  EXPECT_EQ(file.display, Imath::Box2i({10, 20}, {29, 39}));
  EXPECT_EQ(file.data, Imath::Box2i({9, 36}, {10, 37}));
  EXPECT_EQ(file.value("R", 9, 37), 1.0) << "bottom left";
  EXPECT_EQ(file.value("R", 10, 36), 4.0) << "top right";
}

TEST(ExrWriter, typesAndBits_areKept) {
  const ScratchFolder folder;
  writeExr(smallOutput(), folder.file("a.exr"));
  const ReadFile file = testing::readBack(folder.file("a.exr"));
  EXPECT_EQ(file.channels.at("R").type, Imf::FLOAT);
  EXPECT_EQ(file.channels.at("m.half").type, Imf::HALF);
  EXPECT_EQ(file.channels.at("id").type, Imf::UINT);
  EXPECT_EQ(file.bits("m.half", 9, 37), 0x7C01U) << "a signalling NaN";
  EXPECT_EQ(file.bits("m.half", 10, 37), 0xFE55U);
  EXPECT_EQ(file.bits("id", 10, 36), ~0U);
  EXPECT_EQ(file.header.compression(), Imf::ZIP_COMPRESSION);
}

TEST(ExrWriter, attributesOfTheInput_areKeptButItsLayoutIsNot) {
  const ScratchFolder folder;
  OutputPicture picture = smallOutput();
  HeaderAttributes from;
  from.header.pixelAspectRatio() = 2.0F;
  from.header.lineOrder() = Imf::DECREASING_Y;
  Imf::addOwner(from.header, "me");
  picture.attributes = std::make_shared<HeaderAttributes>(from);
  writeExr(picture, folder.file("a.exr"));
  const ReadFile file = testing::readBack(folder.file("a.exr"));
  EXPECT_EQ(file.header.pixelAspectRatio(), 2.0F);
  EXPECT_EQ(Imf::owner(file.header), "me");
  EXPECT_EQ(file.header.lineOrder(), Imf::INCREASING_Y);
}

// The compression of a result whose input had `before`.
Imf::Compression compressionAfter(Imf::Compression before,
                                  std::optional<Imf::Compression> wanted = std::nullopt) {
  const ScratchFolder folder;
  OutputPicture picture = smallOutput();
  HeaderAttributes from;
  from.header.compression() = before;
  picture.attributes = std::make_shared<HeaderAttributes>(from);
  picture.compression = wanted;
  writeExr(picture, folder.file("a.exr"));
  return testing::readBack(folder.file("a.exr")).header.compression();
}

TEST(ExrWriter, compressionThatKeepsBits_isTheInputs) {
  for (const Imf::Compression before :
       {Imf::NO_COMPRESSION, Imf::RLE_COMPRESSION, Imf::ZIPS_COMPRESSION, Imf::ZIP_COMPRESSION,
        Imf::PIZ_COMPRESSION}) {
    EXPECT_EQ(compressionAfter(before), before);
  }
}

TEST(ExrWriter, lossyCompressionOfTheInput_becomesZip) {
  for (const Imf::Compression before :
       {Imf::PXR24_COMPRESSION, Imf::B44_COMPRESSION, Imf::B44A_COMPRESSION, Imf::DWAA_COMPRESSION,
        Imf::DWAB_COMPRESSION}) {
    EXPECT_EQ(compressionAfter(before), Imf::ZIP_COMPRESSION) << before;
  }
}

TEST(ExrWriter, compressionThatIsAskedFor_wins) {
  EXPECT_EQ(compressionAfter(Imf::PIZ_COMPRESSION, Imf::DWAA_COMPRESSION), Imf::DWAA_COMPRESSION);
}

TEST(ExrWriter, manyRows_areWrittenWhole) {
  const ScratchFolder folder;
  OutputPicture picture;
  constexpr int kHeight = 700;
  picture.display = {0, 0, 4, kHeight - 1};
  picture.box = {0, 0, 5, kHeight};
  auto rows = std::make_shared<std::vector<float>>();
  for (int i = 0; i < 5 * kHeight; ++i)
    rows->push_back(static_cast<float>(i));
  picture.channels.push_back({"R", "rgba.red", FloatSamples(rows)});
  writeExr(picture, folder.file("a.exr"));
  const Picture back = readExr(folder.file("a.exr"));
  EXPECT_EQ(*std::get<FloatSamples>(back.channels[0].samples), *rows);
}

/// Files may not grow beyond so many bytes while this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(std::size_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

ExitCode codeWithin(std::size_t room, const std::string& file) {
  const FileSizeLimit limit(room);
  try {
    writeExr(smallOutput(), file);
  } catch (const ToolError& error) {
    return error.code();
  }
  return ExitCode::Done;
}

TEST(ExrWriter, noRoomForAnyByte_isNoticed) {
  const ScratchFolder folder;
  const std::string file = folder.file("a.exr");
  writeExr(smallOutput(), file);
  const std::size_t whole = testing::bytesOfFile(file).size();
  testing::writeBytes(file, "old");
  for (std::size_t room = 0; room < whole; ++room) {
    ASSERT_EQ(codeWithin(room, file), ExitCode::OutputNotWritten) << room << " of " << whole;
    ASSERT_EQ(testing::bytesOfFile(file), "old") << room;
  }
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"a.exr"});
  EXPECT_EQ(codeWithin(whole, file), ExitCode::Done);
  EXPECT_EQ(testing::bytesOfFile(file).size(), whole);
}

TEST(ExrWriter, missingFolder_isOutputNotWritten) {
  const ScratchFolder folder;
  try {
    writeExr(smallOutput(), folder.file("no/a.exr"));
    FAIL();
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::OutputNotWritten);
  }
}

}  // namespace
}  // namespace drevintool
