#include "picture/StreamPlace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <future>
#include <nlohmann/json.hpp>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;

TEST(StreamPlace, filesFoldersAndNothing_areNone) {
  const ScratchFolder folder;
  writeBytes(folder.file("file"), "");
  fs::create_symlink("/dev/null", folder.file("link"));
  EXPECT_FALSE(StreamPlace::at(folder.file("file")));
  EXPECT_FALSE(StreamPlace::at(folder.file("nothing")));
  EXPECT_FALSE(StreamPlace::at(folder.path()));
  // Links are to be followed before.
  EXPECT_FALSE(StreamPlace::at(folder.file("link")));
  EXPECT_TRUE(StreamPlace::at("/dev/null"));
}

TEST(StreamPlace, openFiles_areByTheirNumbers) {
  const ScratchFolder folder;
  writeBytes(folder.file("log"), "before\n");
  writeBytes(folder.file("file"), "bytes\n");
  const int log = open(folder.file("log").c_str(), O_WRONLY | O_APPEND);
  const int file = open(folder.file("file").c_str(), O_RDONLY);
  const auto place = [](int number) {
    return StreamPlace::at("/proc/self/fd/" + std::to_string(number));
  };
  ASSERT_TRUE(place(log) && place(file));
  EXPECT_EQ(place(log)->fault(), 0);
  EXPECT_EQ(place(log)->take(file), 0);
  EXPECT_EQ(bytesOfFile(folder.file("log")), "before\nbytes\n");
  EXPECT_EQ(place(file)->fault(), EBADF);
  EXPECT_FALSE(StreamPlace::at("/proc/self/fd/no"));
  EXPECT_FALSE(StreamPlace::at("/proc/self/fd/-1"));
  close(log);
  EXPECT_FALSE(place(log));
  close(file);
}

class StreamOutput : public ::testing::Test {
 protected:
  StreamOutput() { writeExrFixture(input_, rgbazPart(16, 12, 90.0)); }

  RunResult withReport(const std::string& report, const RunOptions& options = {}) const {
    return runCommand(renderArguments(input_, folder_.file("o.exr"), {"--report", report}),
                      options);
  }

  // All bytes that come through a pipe with that name.
  static std::future<std::string> reading(const std::string& pipe) {
    return std::async(std::launch::async, [pipe] { return bytesOfFile(pipe); });
  }

  ScratchFolder folder_;
  std::string input_ = folder_.file("in.exr");
};

// Standard output goes to a file there, which holds something already.
TEST_F(StreamOutput, openFile_isWrittenToAndKeepsWhatItHeld) {
  RunOptions options;
  options.inChild = [] { (void)!write(STDOUT_FILENO, "before\n", 7); };
  fs::create_symlink("/dev/stdout", folder_.file("link.json"));
  for (const std::string& place : {std::string("/dev/stdout"), std::string("/dev/fd/1"),
                                   std::string("/proc/self/fd/1"), folder_.file("link.json")}) {
    const RunResult result = withReport(place, options);
    EXPECT_EQ(result.exitCode, 0) << result.error;
    ASSERT_EQ(result.out.substr(0, 7), "before\n") << place;
    EXPECT_EQ(nlohmann::json::parse(result.out.substr(7))["output"], folder_.file("o.exr"));
  }
  const RunResult result = withReport("/dev/stderr");
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(nlohmann::json::parse(result.error)["output"], folder_.file("o.exr"));
  EXPECT_EQ(folder_.entries(), (std::vector<std::string>{"in.exr", "link.json", "o.exr"}));
}

TEST_F(StreamOutput, pipe_isGivenTheReportAndThePicture) {
  ASSERT_EQ(runCommand(renderArguments(input_, folder_.file("o.exr"))).exitCode, 0);
  const std::string whole = bytesOfFile(folder_.file("o.exr"));
  for (const char* name : {"r.json", "p.exr"})
    ASSERT_EQ(mkfifo(folder_.file(name).c_str(), 0600), 0);
  std::future<std::string> report = reading(folder_.file("r.json"));
  std::future<std::string> picture = reading(folder_.file("p.exr"));
  const RunResult result = runCommand(
      renderArguments(input_, folder_.file("p.exr"), {"--report", folder_.file("r.json")}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  if (result.exitCode != 0) {  // else the readers wait for ever
    for (const char* name : {"r.json", "p.exr"})
      close(open(folder_.file(name).c_str(), O_RDWR | O_NONBLOCK));
  }
  EXPECT_EQ(nlohmann::json::parse(report.get())["output"], folder_.file("p.exr"));
  EXPECT_EQ(picture.get(), whole);
  for (const char* name : {"r.json", "p.exr"})
    EXPECT_TRUE(fs::is_fifo(folder_.file(name))) << name;
}

TEST_F(StreamOutput, pipeWithoutReader_waitsUntilASignal) {
  ASSERT_EQ(mkfifo(folder_.file("p.exr").c_str(), 0600), 0);
  RunOptions options;
  options.signal = SIGTERM;
  options.signalAfterSeconds = 1.0;
  const RunResult result = runCommand(renderArguments(input_, folder_.file("p.exr")), options);
  EXPECT_EQ(result.exitCode, 143) << result.error;
  EXPECT_TRUE(fs::is_fifo(folder_.file("p.exr")));
}

TEST_F(StreamOutput, device_isWrittenToAndStays) {
  fs::create_symlink("/dev/null", folder_.file("p.exr"));
  fs::create_symlink("/dev/full", folder_.file("full.json"));
  EXPECT_EQ(withReport("/dev/null").exitCode, 0);
  const RunResult result = runCommand(renderArguments(input_, folder_.file("p.exr")));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_TRUE(fs::is_symlink(folder_.file("p.exr")));
  const RunResult full = withReport(folder_.file("full.json"));
  EXPECT_EQ(full.exitCode, 4);
  EXPECT_TRUE(isOneErrorLine(full.error)) << full.error;
  EXPECT_NE(full.error.find("full.json: No space left"), std::string::npos) << full.error;
}

}  // namespace
}  // namespace drevintool::testing
