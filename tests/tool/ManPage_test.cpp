#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "CommandRun.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

using Texts = std::vector<std::string>;

// As a reader sees it: without the typesetter's marks.
std::string plainPage() {
  std::string page = bytesOfFile(DREVIN_MAN_PAGE);
  page = std::regex_replace(page, std::regex(R"(\\f[BIR])"), "");
  return std::regex_replace(page, std::regex(R"(\\-)"), "-");
}

// The part of the page about a subcommand.
std::string sectionOf(const std::string& subcommand) {
  const std::string page = plainPage();
  const std::size_t begin = page.find(".SS drevin " + subcommand + "\n");
  if (begin == std::string::npos) return {};
  const std::size_t end = std::min(page.find("\n.SS ", begin), page.find("\n.SH ", begin));
  return page.substr(begin, end - begin);
}

// First words of the lines of --help that are indented by two blanks.
Texts namesInHelp(const Texts& arguments) {
  Texts names;
  std::istringstream help(runCommand(arguments).out);
  std::smatch match;
  for (std::string line; std::getline(help, line);) {
    if (std::regex_search(line, match, std::regex(R"(^  ([^ ,]+))"))) names.push_back(match[1]);
  }
  return names;
}

Texts subcommands() {
  Texts names = namesInHelp({"--help"});
  names.erase(std::remove_if(names.begin(), names.end(),
                             [](const std::string& name) { return name.front() == '-'; }),
              names.end());
  return names;
}

TEST(ManPage, everyOptionOfEverySubcommand_standsInIt) {
  const Texts names = subcommands();
  ASSERT_GE(names.size(), 7U);
  for (const std::string& subcommand : names) {
    const std::string section = sectionOf(subcommand);
    ASSERT_FALSE(section.empty()) << subcommand;
    const Texts options = namesInHelp({subcommand, "--help"});
    ASSERT_FALSE(options.empty()) << subcommand;
    for (const std::string& option : options) {
      EXPECT_TRUE(std::regex_search(section, std::regex("\n(-h, )?" + option + "[ \n]")) ||
                  option == "-h")
          << subcommand << " " << option;
    }
  }
}

TEST(ManPage, everyPlaceOfTheText_isFilled) {
  const std::string page = plainPage();
  EXPECT_EQ(page.find("@SUBCOMMANDS@"), std::string::npos);
  EXPECT_EQ(page.find("@SYNOPSIS@"), std::string::npos);
  EXPECT_EQ(page.find("@VERSION@"), std::string::npos);
  EXPECT_NE(page.find(".TH DREVIN 1"), std::string::npos);
}

TEST(ManPage, typesetter_hasNothingToWarnOf) {
  RunOptions shell;
  shell.command = "/bin/sh";
  if (runCommand({"-c", "command -v groff"}, shell).exitCode != 0) GTEST_SKIP() << "no groff here";
  const RunResult result =
      runCommand({"-c", std::string("groff -man -Tutf8 -ww -z '") + DREVIN_MAN_PAGE + "'"}, shell);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.error, "");
}

}  // namespace
}  // namespace drevintool::testing
