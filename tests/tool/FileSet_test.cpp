#include "sequence/FileSet.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool {
namespace {

using testing::ScratchFolder;

TEST(FileSet, namesOfOnePlace_areOneFile) {
  const ScratchFolder folder;
  FileSet files;
  files.add(folder.file("a.exr"));
  EXPECT_TRUE(files.has(folder.file("a.exr")));
  EXPECT_TRUE(files.has(folder.file("./a.exr")));
  EXPECT_TRUE(files.has(folder.file("nowhere/../a.exr")));
  EXPECT_FALSE(files.has(folder.file("b.exr")));
  EXPECT_FALSE(files.has("a.exr"));
}

TEST(FileSet, relativeNames_areOfTheWorkingFolder) {
  FileSet files;
  files.add("a.exr");
  EXPECT_TRUE(files.has((std::filesystem::current_path() / "a.exr").string()));
}

TEST(FileSet, links_areWhatTheyPointTo) {
  const ScratchFolder folder;
  testing::writeBytes(folder.file("a.exr"), "x");
  std::filesystem::create_symlink(folder.file("a.exr"), folder.file("soft"));
  std::filesystem::create_hard_link(folder.file("a.exr"), folder.file("hard"));
  FileSet files;
  files.add(folder.file("soft"));
  EXPECT_TRUE(files.has(folder.file("a.exr")));
  EXPECT_TRUE(files.has(folder.file("hard")));
}

TEST(FileSet, linkedFolders_areOne) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("real"));
  std::filesystem::create_directory_symlink(folder.file("real"), folder.file("link"));
  FileSet files;
  files.add(folder.file("link/a.exr"));
  EXPECT_TRUE(files.has(folder.file("real/a.exr")));
}

}  // namespace
}  // namespace drevintool
