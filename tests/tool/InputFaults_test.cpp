#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "Refusal.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;
using Pieces = std::vector<std::string>;

/// Files that are no pictures, damaged ones, and pictures that cannot be used, wherever the command
/// takes a picture. What is particular to deep files is in DeepFaults.
class InputFaults : public ::testing::Test {
 protected:
  InputFaults() { writeExrFixture(good_, rgbazPart(16, 12, 100.0)); }

  // The file on each of the flat inputs, and as the deep one.
  void expectRefusedEverywhere(const std::string& file, const Pieces& pieces,
                               const RunOptions& options = {}) const {
    expectRefused(renderArguments(file, output_), 3, pieces, options);
    expectRefused(renderArguments(good_, output_, {"--kernel", file}), 3, pieces, options);
    expectRefused(renderArguments(good_, output_, {"--mattes", file}), 3, pieces, options);
    expectRefused(deepArguments(file, output_), 3, pieces, options);
  }

  void expectFlatRefused(const Pieces& pieces) const {
    RunOptions options;
    options.addressSpace = DREVIN_SANITIZED ? 0 : std::size_t{1} << 30;
    expectRefused(renderArguments(file_, output_), 3, pieces, options);
  }

  // Changes the bytes behind an attribute's name, type and size.
  void setAttribute(const std::string& nameAndType, const std::string& bytes) const {
    std::string file = bytesOfFile(good_);
    const std::size_t at = file.find(nameAndType);
    ASSERT_NE(at, std::string::npos);
    file.replace(at + nameAndType.size() + 4, bytes.size(), bytes);
    writeBytes(file_, file);
  }

  void setWindow(const char* name, const std::vector<std::int32_t>& corners) const {
    setAttribute(name + std::string("\0box2i\0", 7),
                 {reinterpret_cast<const char*>(corners.data()), 16});
  }

  ScratchFolder folder_;
  std::string good_ = folder_.file("good.exr");
  std::string file_ = folder_.file("bad.exr");
  std::string output_ = folder_.file("out.exr");
};

TEST_F(InputFaults, missingFile_isNamed) {
  expectRefusedEverywhere(file_, {file_, "No such file or directory"});
}

TEST_F(InputFaults, directory_isNamed) {
  fs::create_directory(file_);
  expectRefusedEverywhere(file_, {file_, "is a directory"});
}

TEST_F(InputFaults, device_isNoPicture) {
  expectRefusedEverywhere("/dev/zero", {"/dev/zero", "not a regular file"});
}

TEST_F(InputFaults, fileThatMayNotBeRead_isNamed) {
  if (!canRunUnprivileged()) GTEST_SKIP() << "the build cannot be run by the user nobody";
  fs::permissions(folder_.path(), fs::perms(0777));
  fs::copy(good_, file_);
  fs::permissions(file_, fs::perms::none);
  RunOptions options;
  options.unprivileged = true;
  expectRefusedEverywhere(file_, {file_, "Permission denied"}, options);
}

TEST_F(InputFaults, emptyFile_saysSo) {
  writeBytes(file_, "");
  expectRefusedEverywhere(file_, {file_, "is empty"});
}

TEST_F(InputFaults, pngWithAnotherName_isNoOpenExr) {
  ASSERT_EQ(runCommand(renderArguments(good_, folder_.file("result.png"))).exitCode, 0);
  fs::rename(folder_.file("result.png"), file_);
  expectRefusedEverywhere(file_, {file_, "not an OpenEXR picture"});
}

TEST_F(InputFaults, truncatedFlatFile_isRefused) {
  writeExrFixture(good_, rgbazPart(160, 120, 100.0));
  const std::string whole = bytesOfFile(good_);
  for (const std::size_t length :
       {std::size_t{10}, std::size_t{1000}, whole.size() / 2, whole.size() - 1}) {
    writeBytes(file_, whole.substr(0, length));
    expectFlatRefused({file_});
  }
}

TEST_F(InputFaults, truncatedTiledFile_isRefused) {
  PartFixture part = rgbazPart(160, 120, 100.0);
  part.tileSize = 32;
  writeExrFixture(good_, part);
  const std::string whole = bytesOfFile(good_);
  for (const std::size_t length :
       {std::size_t{10}, std::size_t{1000}, whole.size() / 2, whole.size() - 1}) {
    writeBytes(file_, whole.substr(0, length));
    expectFlatRefused({file_});
  }
}

TEST_F(InputFaults, windowsThatLie_areRefusedBeforeAllocating) {
  const std::vector<std::vector<std::int32_t>> windows = {
      {0, 0, 2147483646, 2147483646},
      {-2147483647, -2147483647, 2147483647, 2147483647},
      {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
      {15, 0, 0, 11},
      {0, 11, 15, 0},
      {1000000000, 0, 1000000015, 11},
      {0, 0, 131071, 131071}};
  for (const std::vector<std::int32_t>& window : windows) {
    setWindow("dataWindow", window);
    expectFlatRefused({file_, "damaged"});
  }
}

TEST_F(InputFaults, displayWindowThatLies_isRefused) {
  for (const std::vector<std::int32_t>& window :
       {std::vector<std::int32_t>{0, 0, 2147483646, 2147483646}, {15, 0, 0, 11}}) {
    setWindow("displayWindow", window);
    expectFlatRefused({file_, "display window"});
  }
}

TEST_F(InputFaults, subsampledChannel_isNamedWithTheRemedy) {
  std::string bytes = bytesOfFile(good_);
  bytes[bytes.find(std::string("A\0\1\0\0\0", 6)) + 10] = 2;  // its x sampling
  writeBytes(file_, bytes);
  expectFlatRefused({file_, "channel A is subsampled", "convert"});
}

TEST_F(InputFaults, attributeLargerThanTheFile_isRefused) {
  std::string bytes = bytesOfFile(good_);
  const std::string key("dataWindow\0box2i\0", 17);
  const std::uint32_t size = 0x7ffffff0;
  std::memcpy(bytes.data() + bytes.find(key) + key.size(), &size, sizeof size);
  writeBytes(file_, bytes);
  expectFlatRefused({file_, "attribute"});
}

}  // namespace
}  // namespace drevintool::testing
