#include "picture/AtomicFile.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using testing::bytesOfFile;
using testing::ScratchFolder;
using testing::writeBytes;

ExitCode codeOf(const std::string& path) {
  try {
    AtomicFile::checkPlace(path);
  } catch (const ToolError& error) {
    return error.code();
  }
  return ExitCode::Done;
}

TEST(AtomicFile, beforeCommit_theOldFileStands) {
  const ScratchFolder folder;
  writeBytes(folder.file("out"), "old");
  AtomicFile file(folder.file("out"));
  file.write("new", 3);
  EXPECT_EQ(bytesOfFile(folder.file("out")), "old");
  file.commit();
  EXPECT_EQ(bytesOfFile(folder.file("out")), "new");
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"out"});
}

TEST(AtomicFile, notCommitted_leavesNothing) {
  const ScratchFolder folder;
  {
    AtomicFile file(folder.file("out"));
    file.write("new", 3);
    EXPECT_EQ(folder.entries().size(), 1U);
  }
  EXPECT_TRUE(folder.entries().empty());
}

TEST(AtomicFile, seekBack_overwrites) {
  const ScratchFolder folder;
  AtomicFile file(folder.file("out"));
  file.write("abcdef", 6);
  EXPECT_EQ(file.position(), 6U);
  file.seek(2);
  file.write("XY", 2);
  file.commit();
  EXPECT_EQ(bytesOfFile(folder.file("out")), "abXYef");
}

TEST(AtomicFile, symbolicLink_isFollowed) {
  const ScratchFolder folder;
  writeBytes(folder.file("target"), "old");
  std::filesystem::create_symlink(folder.file("target"), folder.file("link"));
  AtomicFile file(folder.file("link"));
  file.write("new", 3);
  file.commit();
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
  EXPECT_EQ(bytesOfFile(folder.file("target")), "new");
}

TEST(AtomicFile, permissionsOfTheReplacedFile_areKept) {
  const ScratchFolder folder;
  writeBytes(folder.file("out"), "old");
  std::filesystem::permissions(folder.file("out"), std::filesystem::perms::owner_all);
  AtomicFile file(folder.file("out"));
  file.commit();
  EXPECT_EQ(std::filesystem::status(folder.file("out")).permissions(),
            std::filesystem::perms::owner_all);
}

TEST(AtomicFile, fileAtFault_isRefusedAndTheOldOneStands) {
  const ScratchFolder folder;
  writeBytes(folder.file("out"), "old");
  std::string looked;
  try {
    AtomicFile file(folder.file("out"));
    file.write("new", 3);
    file.commit([&looked](const std::string& written) {
      looked = bytesOfFile(written);
      return "it is odd";
    });
    FAIL();
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::OutputNotWritten);
    EXPECT_EQ(error.what(), folder.file("out") + ": was not written whole: it is odd");
  }
  EXPECT_EQ(looked, "new");
  EXPECT_EQ(bytesOfFile(folder.file("out")), "old");
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"out"});
}

TEST(AtomicFile, twoOnOnePlace_doNotDisturbEachOther) {
  const ScratchFolder folder;
  AtomicFile first(folder.file("out"));
  AtomicFile second(folder.file("out"));
  first.write("first", 5);
  second.write("second", 6);
  second.commit();
  EXPECT_EQ(bytesOfFile(folder.file("out")), "second");
  first.commit();
  EXPECT_EQ(bytesOfFile(folder.file("out")), "first");
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"out"});
}

TEST(AtomicFile, whatAKilledProcessLeft_goes) {
  const ScratchFolder folder;
  writeBytes(folder.file(".out.4194305.tmp"), "half a file");
  AtomicFile file(folder.file("out"));
  file.commit();
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"out"});
}

TEST(AtomicFile, missingFolderOrDirectory_isRefused) {
  const ScratchFolder folder;
  EXPECT_EQ(codeOf(folder.file("no/such/out")), ExitCode::OutputNotWritten);
  EXPECT_EQ(codeOf(folder.path()), ExitCode::OutputNotWritten);
  EXPECT_EQ(codeOf(folder.file("out")), ExitCode::Done);
}

}  // namespace
}  // namespace drevintool
