#include "EmbeddedHost/Plugin.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "host/HostBench.h"

using DD::Image::Op;
using embedded::findClass;
using embedded::loadPlugin;
using embedded::PluginError;

namespace {

std::string errorOf(const std::string& file, const std::string& className) {
  try {
    loadPlugin(file, className);
  } catch (const PluginError& error) {
    return error.what();
  }
  return "loaded";
}

bool isOneLineNaming(const std::string& text, const std::string& file) {
  return text.find(file) != std::string::npos && text.find('\n') == std::string::npos;
}

Op* buildNothing(Node* /*node*/) {
  return nullptr;
}

}  // namespace

TEST(Plugin, loading_registersItsClass) {
  EXPECT_EQ(findClass("HostTestModule"), nullptr);
  const Op::Description& description = loadPlugin(HOST_TEST_MODULE, "HostTestModule");
  EXPECT_STREQ(description.name, "HostTestModule");
  EXPECT_EQ(findClass("HostTestModule"), &description);
  EXPECT_TRUE(std::filesystem::equivalent(description.plugin, HOST_TEST_MODULE));
}

TEST(Plugin, buildString_isThatOfItsOwnBuild) {
  EXPECT_STREQ(loadPlugin(HOST_TEST_MODULE, "HostTestModule").compiled, "Jan  2 2030 for 12.0");
  EXPECT_NE(std::string(smooth::SmoothOp::description.compiled).find(" for 12.0"),
            std::string::npos);
  EXPECT_STRNE(smooth::SmoothOp::description.compiled, "Jan  2 2030 for 12.0");
}

TEST(Plugin, loadedTwice_isTheSame) {
  const Op::Description& first = loadPlugin(HOST_TEST_MODULE, "HostTestModule");
  const std::filesystem::path file(HOST_TEST_MODULE);
  const std::string roundabout = file.parent_path() / "." / file.filename();
  EXPECT_EQ(&loadPlugin(roundabout, "HostTestModule"), &first);
}

TEST(Plugin, operatorOfAModule_rendersAndCastsAcrossTheBoundary) {
  Node node(loadPlugin(HOST_TEST_MODULE, "HostTestModule"));
  embedded::ImageInput picture(smooth::markedImage(DD::Image::Box(0, 0, 4, 4)));
  ASSERT_TRUE(node.connect(0, &picture)) << "test_input casts to an image operator";
  EXPECT_NE(dynamic_cast<DD::Image::Iop*>(&node.op()), nullptr);
  EXPECT_STREQ(node.op().Class(), "HostTestModule");
  embedded::RenderOptions options;
  options.channels = DD::Image::Mask_RGBA;
  const embedded::RenderResult result = embedded::render(node, options);
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(result.image.planes.at(DD::Image::Chan_Red)->at(5),
            2.0F * smooth::markedValue(1, 1, DD::Image::Chan_Red));
}

TEST(Plugin, missingFile_isAnErrorOfOneLine) {
  const std::string text = errorOf("/nowhere/Missing.so", "Missing");
  EXPECT_TRUE(isOneLineNaming(text, "/nowhere/Missing.so")) << text;
}

TEST(Plugin, fileThatIsNoLibrary_isAnErrorOfOneLine) {
  const std::string file = ::testing::TempDir() + "HostTestNoLibrary.so";
  std::ofstream(file) << "not a shared library\n";
  const std::string text = errorOf(file, "HostTestNoLibrary");
  EXPECT_TRUE(isOneLineNaming(text, file)) << text;
  std::filesystem::remove(file);
  EXPECT_TRUE(isOneLineNaming(errorOf(::testing::TempDir(), "Folder"), ::testing::TempDir()));
}

TEST(Plugin, libraryWithoutTheClass_isAnError) {
  EXPECT_TRUE(isOneLineNaming(errorOf(HOST_TEST_MODULE, "HostTestOther"), HOST_TEST_MODULE));
  EXPECT_TRUE(
      isOneLineNaming(errorOf(HOST_TEST_EMPTY_MODULE, "HostTestModule"), HOST_TEST_EMPTY_MODULE))
      << "the class of another library is none of its own";
}

TEST(Plugin, buildForAnotherVersion_isAnErrorThatNamesBoth) {
  const std::string built = "Jan  2 2030 for 12.0";
  const std::string file = ::testing::TempDir() + "HostTestOtherBuild";
  const auto loadedAs = [&](const std::string& build, int number) {
    std::ifstream whole(HOST_TEST_MODULE, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(whole)), std::istreambuf_iterator<char>());
    const std::size_t at = bytes.find(built);
    if (at == std::string::npos || build.size() != built.size()) return std::string("not patched");
    const std::string other = file + std::to_string(number) + ".so";
    std::ofstream(other, std::ios::binary) << bytes.replace(at, built.size(), build);
    const std::string text = errorOf(other, "HostTestModule");
    std::filesystem::remove(other);
    return text;
  };
  EXPECT_EQ(loadedAs("1 Jan 30 for 12.0 v5", 0), "loaded") << "releases are laid out alike";
  EXPECT_EQ(loadedAs("1 Jan 2030 for 12.0v", 1), "loaded");
  int number = 2;
  for (const auto& [build, found] :
       std::vector<std::pair<std::string, std::string>>{{"Jan  2 2030 for 13.0", "version 13.0"},
                                                        {"Jan  2 2030 for 12.1", "version 12.1"},
                                                        {"Jan  2 203 for 12.00", "version 12.00"},
                                                        {"Jan  2 203 for 112.0", "version 112.0"},
                                                        {"Jan  2 20300 for 12.", "no version"},
                                                        {"Jan  2 2030 for .0.0", "no version"},
                                                        {"Jan  2 2030 in  12.0", "no version"}}) {
    const std::string text = loadedAs(build, number++);
    EXPECT_NE(text.find(found), std::string::npos) << build << ": " << text;
    EXPECT_NE(text.find("this host has version 12.0"), std::string::npos) << text;
    EXPECT_TRUE(isOneLineNaming(text, file)) << text;
  }
}

TEST(Plugin, libraryWithUnresolvedSymbols_isAnError) {
  EXPECT_TRUE(
      isOneLineNaming(errorOf(HOST_TEST_BROKEN_MODULE, "HostTestBroken"), HOST_TEST_BROKEN_MODULE));
}

TEST(Classes, ofTheProgram_areKnownWithoutAFile) {
  EXPECT_EQ(findClass("HostTestSmooth"), &smooth::SmoothOp::description);
  EXPECT_EQ(smooth::SmoothOp::description.plugin, nullptr);
  EXPECT_EQ(findClass("HostTestUnknown"), nullptr);
}

TEST(Classes, ofOneName_theFirstCountsWhileItLives) {
  const Op::Description second("HostTestTwice", buildNothing);
  {
    const Op::Description third("HostTestTwice", buildNothing);
    EXPECT_EQ(findClass("HostTestTwice"), &second);
  }
  EXPECT_EQ(findClass("HostTestTwice"), &second);
}
