#include "picture/TemporaryFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "ScratchFolder.h"

namespace drevintool {
namespace {

using testing::ScratchFolder;
using testing::writeBytes;
using Names = std::vector<std::string>;

TEST(TemporaryFile, namesThatAreTaken_arePassedOver) {
  const ScratchFolder folder;
  const TemporaryFile first = makeTemporaryFile(folder.file("out"), 0600);
  const TemporaryFile second = makeTemporaryFile(folder.file("out"), 0600);
  const std::string process = std::to_string(getpid());
  EXPECT_EQ(folder.entries(), (Names{".out." + process + "-1.tmp", ".out." + process + ".tmp"}));
  EXPECT_NE(first.path, second.path);
  close(first.descriptor);
  close(second.descriptor);
}

TEST(TemporaryFile, longNames_areCut) {
  const ScratchFolder folder;
  const TemporaryFile made = makeTemporaryFile(folder.file(std::string(255, 'n')), 0600);
  EXPECT_GE(made.descriptor, 0);
  close(made.descriptor);
}

TEST(TemporaryFile, missingFolder_isNoDescriptorAndItsReason) {
  const ScratchFolder folder;
  EXPECT_EQ(makeTemporaryFile(folder.file("no/out"), 0600).descriptor, -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST(RemoveAbandonedFiles, filesThatNobodyLocks_goAndTheOthersStay) {
  const ScratchFolder folder;
  const std::string place = folder.file("out.exr");
  const TemporaryFile mine = makeTemporaryFile(place, 0600);
  writeBytes(folder.file(".out.exr.123456.tmp"), "of a process that was killed");
  writeBytes(folder.file(".out.exr.123456-2.tmp"), "likewise");
  removeAbandonedFiles(place);
  EXPECT_EQ(folder.entries(), Names{std::filesystem::path(mine.path).filename().string()});
  close(mine.descriptor);
  removeAbandonedFiles(place);
  EXPECT_TRUE(folder.entries().empty());
}

TEST(RemoveAbandonedFiles, copyOfADescriptor_keepsTheLock) {
  const ScratchFolder folder;
  const TemporaryFile made = makeTemporaryFile(folder.file("out"), 0600);
  const int copy = dup(made.descriptor);
  close(made.descriptor);
  removeAbandonedFiles(folder.file("out"));
  EXPECT_EQ(folder.entries().size(), 1U);
  close(copy);
}

TEST(RemoveAbandonedFiles, filesOfOtherNames_stay) {
  const ScratchFolder folder;
  const Names names = {".out.1.tmp",        ".out.exr..tmp", ".out.exr.12a.tmp", ".out.exr.12.tmpx",
                       ".other.exr.12.tmp", "out.exr",       "out.exr.12.tmp"};
  for (const std::string& name : names)
    writeBytes(folder.file(name), "x");
  removeAbandonedFiles(folder.file("out.exr"));
  EXPECT_EQ(folder.entries().size(), names.size());
}

TEST(RemoveAbandonedFiles, linksAndFolders_areNotTouched) {
  const ScratchFolder folder;
  writeBytes(folder.file("precious"), "x");
  std::filesystem::create_symlink(folder.file("precious"), folder.file(".out.1.tmp"));
  std::filesystem::create_directory(folder.file(".out.2.tmp"));
  removeAbandonedFiles(folder.file("out"));
  EXPECT_EQ(folder.entries(), (Names{".out.1.tmp", ".out.2.tmp", "precious"}));
}

TEST(RemoveAbandonedFiles, missingFolder_isLetBe) {
  EXPECT_NO_THROW(removeAbandonedFiles("/no/such/folder/out"));
}

}  // namespace
}  // namespace drevintool
