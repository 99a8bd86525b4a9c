#include <gtest/gtest.h>
#include <sys/stat.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <csignal>
#include <filesystem>

#include "CommandRun.h"
#include "ExrFixture.h"
#include "RealPictures.h"
#include "ScratchFolder.h"
#include "sequence/WholeFile.h"
#include "terminal/NumberText.h"

namespace drevintool::testing {
namespace {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

// Six frames of another picture each.
class Sequence : public ::testing::Test {
 protected:
  Sequence() {
    for (int frame = 1; frame <= 6; ++frame)
      writeFrame(frame);
  }

  std::string frameFile(int frame) const {
    return folder_.file("in.000" + std::to_string(frame) + ".exr");
  }

  void writeFrame(int frame) const {
    PartFixture part = rgbazPart(40, 30, 90.0 + frame);
    part.channels.front().value = [frame](int x, int y) { return (x * 7 + y * frame) % 13 * 0.1; };
    writeExrFixture(frameFile(frame), part);
  }

  RunResult render(const Texts& more, const RunOptions& options = {}) const {
    Texts arguments = renderArguments(folder_.file("in.####.exr"), folder_.file("out.@.exr"),
                                      {"--set", "multiplier=20", "--set", "focalPlane=80"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments, options);
  }

  Texts outputs() const {
    Texts names;
    for (const std::string& name : folder_.entries()) {
      if (name.rfind("out.", 0) == 0) names.push_back(name);
    }
    return names;
  }

  ScratchFolder folder_;
};

TEST_F(Sequence, frames_areTheSameAsRenderedOneByOne) {
  const RunResult result = render({"--frames", "1-6"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(result.error, "");
  for (int frame = 1; frame <= 6; ++frame) {
    const std::string alone = folder_.file("alone.exr");
    ASSERT_EQ(runCommand(renderArguments(frameFile(frame), alone,
                                         {"--set", "multiplier=20", "--set", "focalPlane=80"}))
                  .exitCode,
              0);
    EXPECT_TRUE(bytesOfFile(alone) ==
                bytesOfFile(folder_.file("out." + std::to_string(frame) + ".exr")))
        << frame;
  }
}

TEST_F(Sequence, anyNumberInFlight_givesTheSameBytes) {
  ASSERT_EQ(render({"--frames", "1-6", "--frames-in-flight", "1"}).exitCode, 0);
  Texts before;
  for (const std::string& name : outputs())
    before.push_back(bytesOfFile(folder_.file(name)));
  ASSERT_EQ(before.size(), 6U);
  for (const char* inFlight : {"2", "3", "6"}) {
    ASSERT_EQ(render({"--frames", "1-6", "--frames-in-flight", inFlight}).exitCode, 0);
    Texts after;
    for (const std::string& name : outputs())
      after.push_back(bytesOfFile(folder_.file(name)));
    EXPECT_TRUE(before == after) << inFlight;
  }
}

TEST_F(Sequence, chosenFrames_areRenderedAndNoOthers) {
  ASSERT_EQ(render({"--frames", "6-1x5,3,3"}).exitCode, 0);
  EXPECT_EQ(outputs(), (Texts{"out.1.exr", "out.3.exr", "out.6.exr"}));
}

TEST_F(Sequence, missingFrames_endWith2AndTheirNamesBeforeAnyIsRendered) {
  const RunResult result = render({"--frames", "5-9"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("frames 7-9"), std::string::npos) << result.error;
  EXPECT_EQ(outputs(), Texts{});
}

TEST_F(Sequence, pictureOfAllFramesThatOneWouldReplace_isRefusedAndStays) {
  const std::string before = bytesOfFile(frameFile(1));
  const RunResult result = runCommand(renderArguments(
      frameFile(1), folder_.file("in.####.exr"), {"--frames", "1-3", "--set", "multiplier=20"}));
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find("frame 2"), std::string::npos) << result.error;
  EXPECT_TRUE(bytesOfFile(frameFile(1)) == before);
  const RunResult inPlace = runCommand(renderArguments(
      folder_.file("in.####.exr"), folder_.file("in.####.exr"), {"--frames", "1-6"}));
  EXPECT_EQ(inPlace.exitCode, 0) << inPlace.error;
}

TEST_F(Sequence, wrongNameOfManyFrames_isToldSoon) {
  for (int file = 0; file < 300; ++file)
    writeBytes(folder_.file("other." + std::to_string(file) + ".exr"), "x");
  RunOptions options;
  options.timeoutSeconds = 110.0;
  const RunResult result =
      runCommand(renderArguments(folder_.file("nothere.####.exr"), folder_.file("out.#.exr"),
                                 {"--frames", "1-100000"}),
                 options);
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_LT(result.processorSeconds, DREVIN_SANITIZED != 0 ? 60.0 : 10.0);
}

TEST_F(Sequence, signalWhileItIsPlanned_endsItSoon) {
  for (const double moment : {0.0, 0.3, 1.0}) {
    RunOptions options;
    options.signal = SIGTERM;
    options.signalAfterSeconds = moment;
    const RunResult result =
        runCommand(renderArguments(frameFile(1), folder_.file("out.#.exr"),
                                   {"--frames", "1-1000000", "--kernel", folder_.file("k.#.exr")}),
                   options);
    EXPECT_EQ(result.exitCode, 143) << moment << " " << result.error;
    EXPECT_LT(result.secondsAfterSignal, DREVIN_SANITIZED != 0 ? 60.0 : 10.0) << moment;
  }
}

TEST_F(Sequence, badFrame_endsWith3AndItsName) {
  writeBytes(frameFile(3), "no picture");
  const RunResult result = render({"--frames", "1-6", "--frames-in-flight", "1"});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_EQ(result.error.rfind("drevin: error: frame 3: ", 0), 0U) << result.error;
  EXPECT_EQ(outputs(), (Texts{"out.1.exr", "out.2.exr"}));
}

TEST_F(Sequence, lowestOfSeveralBadFrames_isNamedForAnyNumberInFlight) {
  writeBytes(frameFile(2), "no picture");
  writeBytes(frameFile(4), "no picture either");
  for (const char* inFlight : {"1", "3", "6"}) {
    const RunResult result = render({"--frames", "1-6", "--frames-in-flight", inFlight});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_EQ(result.error.rfind("drevin: error: frame 2: ", 0), 0U) << result.error;
  }
}

TEST_F(Sequence, skippingBadFrames_goesOnAndNamesThem) {
  writeBytes(frameFile(2), "no picture");
  const RunResult result = render({"--frames", "1-9", "--skip-bad-frames"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(outputs(), (Texts{"out.1.exr", "out.3.exr", "out.4.exr", "out.5.exr", "out.6.exr"}));
  const Texts errors = linesStarting(result.error, "drevin: error: ");
  ASSERT_EQ(errors.size(), 5U) << result.error;
  EXPECT_EQ(errors.back(), "drevin: error: 4 of 9 pictures failed: 2,7-9");
  EXPECT_EQ(linesStarting(result.error, "drevin: error: frame 2: ").size(), 1U);
}

TEST_F(Sequence, existingOutputs_stayIfTheyAreWhole) {
  ASSERT_EQ(render({"--frames", "1-4"}).exitCode, 0);
  const std::string whole = bytesOfFile(folder_.file("out.2.exr"));
  writeBytes(folder_.file("out.3.exr"), whole.substr(0, whole.size() - 5));
  // What is left alone is not even read.
  writeBytes(frameFile(2), "no picture");
  const RunResult result = render({"--frames", "1-6", "--skip-existing"});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(outputs().size(), 6U);
  EXPECT_TRUE(isWholePicture(folder_.file("out.3.exr")));
  EXPECT_TRUE(bytesOfFile(folder_.file("out.2.exr")) == whole);
}

TEST_F(Sequence, existingOutputs_areToldOf) {
  ASSERT_EQ(render({"--frames", "1-3"}).exitCode, 0);
  Texts arguments = renderArguments(folder_.file("in.####.exr"), folder_.file("out.@.exr"),
                                    {"--frames", "1-4", "--skip-existing"});
  arguments.erase(arguments.begin() + 1);  // --quiet
  EXPECT_EQ(linesStarting(runCommand(arguments).error, "drevin: ").front(),
            "drevin: 3 of 4 pictures were there already: 1-3");
}

TEST_F(Sequence, onePictureThatIsThere_isToldOf) {
  Texts arguments = renderArguments(frameFile(1), folder_.file("out.exr"), {"--skip-existing"});
  ASSERT_EQ(runCommand(arguments).exitCode, 0);
  EXPECT_EQ(runCommand(arguments).error, "") << "quiet";
  arguments.erase(arguments.begin() + 1);  // --quiet
  const RunResult result = runCommand(arguments);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "drevin: "),
            Texts{"drevin: 1 of 1 pictures was there already: " + folder_.file("out.exr")});
}

TEST_F(Sequence, skippedFramesWithoutAReport_getOneThatSaysSo) {
  const std::string report = folder_.file("r.@.json");
  ASSERT_EQ(render({"--frames", "1", "--report", report}).exitCode, 0);
  ASSERT_EQ(render({"--frames", "2"}).exitCode, 0);
  const std::string first = bytesOfFile(folder_.file("r.1.json"));
  ASSERT_EQ(render({"--frames", "1-3", "--skip-existing", "--report", report}).exitCode, 0);
  EXPECT_TRUE(bytesOfFile(folder_.file("r.1.json")) == first) << "says how it was made";
  const Json second = Json::parse(bytesOfFile(folder_.file("r.2.json")));
  EXPECT_EQ(second["skipped"], true);
  EXPECT_EQ(second["output"], folder_.file("out.2.exr"));
  EXPECT_FALSE(Json::parse(bytesOfFile(folder_.file("r.3.json"))).contains("skipped"));
}

TEST_F(Sequence, views_areFilledIn) {
  for (const char* view : {"left", "right"}) {
    ASSERT_EQ(mkdir(folder_.file(view).c_str(), 0700), 0);
    writeExrFixture(folder_.file(std::string(view) + "/a.01.exr"), rgbazPart(20, 10, 100.0));
  }
  const RunResult result =
      runCommand(renderArguments(folder_.file("%V/a.##.exr"), folder_.file("out.%v.%02d.exr"),
                                 {"--frames", "1", "--views", "left,right"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_EQ(outputs(), (Texts{"out.l.01.exr", "out.r.01.exr"}));
}

TEST_F(Sequence, warningsOfAFrame_beginWithItsName) {
  PartFixture part = rgbazPart(40, 30, 90.0);
  part.channels.front().value = [](int x, int y) { return x == 3 && y == 4 ? NAN : 0.5; };
  writeExrFixture(frameFile(2), part);
  const RunResult result = render({"--frames", "1-3"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: frame 2: 1 pixel of ").size(), 1U)
      << result.error;
}

TEST_F(Sequence, warningOfTheCommandLine_isGivenOnceAndInEveryReport) {
  const RunResult result = render({"--frames", "1-3", "--set", "defocusMatteChannel=matte.defocus",
                                   "--report", folder_.file("r.json")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: ").size(), 1U) << result.error;
  EXPECT_EQ(linesStarting(result.error, "drevin: warning: --set ").size(), 1U) << result.error;
  const Json report = Json::parse(bytesOfFile(folder_.file("r.json")));
  for (const Json& frame : report["frames"])
    EXPECT_EQ(frame["warnings"].size(), 1U) << frame["frame"];
}

// Files that do not change over frames.
class SharedInputs : public Sequence {
 protected:
  SharedInputs() {
    for (const std::string& file : {kernel_, mattes_}) {
      PartFixture part = rgbazPart(9, 9, 1.0);
      part.channels.front().value = [](int x, int) { return x == 4 ? NAN : 0.5; };
      writeExrFixture(file, part);
    }
  }

  // Of a run whose file is gone when its first frame is there.
  RunResult renderWhileGone(const std::string& file, const Texts& more) const {
    RunOptions options;
    options.signal = SIGTERM;  // never sent
    options.signalWhen = [&] {
      if (std::filesystem::exists(folder_.file("out.1.exr"))) std::filesystem::remove(file);
      return false;
    };
    Texts arguments = renderArguments(frameFile(1), folder_.file("out.#.exr"),
                                      {"--frames", manyFrames_, "--set", "multiplier=20"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runCommand(arguments, options);
  }

  Texts warnings(const Texts& more) const {
    return linesStarting(render(more).error, "drevin: warning: ");
  }

  /// Far more than are in flight when the first is written.
  const std::string count_ = DREVIN_SANITIZED ? "40" : "200";
  const std::string manyFrames_ = "1-" + count_;
  const std::string kernel_ = folder_.file("kernel.exr");
  const std::string mattes_ = folder_.file("mattes.exr");
};

TEST_F(SharedInputs, pictures_areReadOnce) {
  const std::vector<std::pair<std::string, Texts>> runs = {
      {kernel_, {"--kernel", kernel_, "--set", "kernelType=Input"}},
      {mattes_, {"--mattes", mattes_, "--set", "defocusMatteChannel=rgba.red"}},
      {frameFile(1), {}}};
  for (const auto& [file, more] : runs) {
    const RunResult result = renderWhileGone(file, more);
    EXPECT_EQ(result.exitCode, 0) << file << " " << result.error;
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(std::to_string(outputs().size()), count_) << file;
    for (const std::string& name : outputs())
      std::filesystem::remove(folder_.file(name));
    writeFrame(1);
  }
}

TEST_F(SharedInputs, cameraFile_isReadOnce) {
  const std::string camera = folder_.file("camera.json");
  writeBytes(camera, R"({"focalLength": 50, "focalPlane": {"1": 80, "9": 100}})");
  const RunResult result = renderWhileGone(camera, {"--camera", camera});
  EXPECT_EQ(result.exitCode, 0) << result.error;
  EXPECT_FALSE(std::filesystem::exists(camera));
}

TEST_F(SharedInputs, cameraOfAFrame_isThatOfItsFrame) {
  const std::string camera = folder_.file("camera.json");
  writeBytes(camera, R"({"focalLength": 50, "focalPlane": {"1": 80, "3": 100}})");
  ASSERT_EQ(
      render({"--frames", "1-3", "--camera", camera, "--report", folder_.file("r.json")}).exitCode,
      0);
  const Json report = Json::parse(bytesOfFile(folder_.file("r.json")));
  for (int frame = 0; frame < 3; ++frame)
    EXPECT_EQ(report["frames"][frame]["camera"]["focalPlane"]["value"], 80 + 10 * frame);
}

TEST_F(SharedInputs, whatIsWrongWithThem_isSaidOnceOfNoFrame) {
  const Texts kernel =
      warnings({"--frames", "1-4", "--kernel", kernel_, "--set", "kernelType=Input"});
  ASSERT_EQ(kernel.size(), 1U);
  EXPECT_EQ(kernel[0].rfind("drevin: warning: 9 pixels of " + kernel_, 0), 0U) << kernel[0];
  const Texts unused = warnings({"--frames", "1-4", "--kernel", kernel_, "--mattes", mattes_});
  ASSERT_EQ(unused.size(), 2U);
  EXPECT_EQ(unused[0].rfind("drevin: warning: --kernel ", 0), 0U) << unused[0];
  EXPECT_EQ(unused[1].rfind("drevin: warning: --mattes ", 0), 0U) << unused[1];
}

TEST_F(SharedInputs, filesOfTheirOwn_areSaidOfEachFrame) {
  for (int frame = 1; frame <= 2; ++frame)
    std::filesystem::copy(kernel_, folder_.file("kernel." + std::to_string(frame) + ".exr"));
  const Texts lines = warnings({"--frames", "1-2", "--frames-in-flight", "1", "--kernel",
                                folder_.file("kernel.#.exr"), "--set", "kernelType=Input"});
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].rfind("drevin: warning: frame 1: ", 0), 0U) << lines[0];
  EXPECT_EQ(lines[1].rfind("drevin: warning: frame 2: ", 0), 0U) << lines[1];
}

TEST_F(Sequence, errorsOfTheNode_nameTheFrameAndEndWith1) {
  const RunResult result = render({"--frames", "1-3", "--set", "kernelType=Input"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_FALSE(linesStarting(result.error, "drevin: error: frame 1: ").empty()) << result.error;
  EXPECT_TRUE(linesStarting(result.error, "drevin: error: frame 2: ").empty()) << result.error;
  EXPECT_TRUE(outputs().empty());
}

TEST_F(Sequence, usageFaults_endWith2AndOneLine) {
  const Texts file = {"--input", frameFile(1)};
  for (const Texts& more :
       {Texts{"--frames", "10-1x0"}, Texts{"--frames", ""}, Texts{"--frames", "1-1000001"}, Texts{},
        Texts{"--frames", "1", "--views", "a,a"}, Texts{"--frames", "1", "--views", ""},
        Texts{"--frames", "1", "--frames-in-flight", "0"}}) {
    const RunResult result = render(more);
    EXPECT_EQ(result.exitCode, 2) << result.error;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  }
  EXPECT_TRUE(outputs().empty());
}

TEST_F(Sequence, optionsOfSequences_areRefusedWithoutOne) {
  for (const char* option : {"--skip-bad-frames", "--frames-in-flight=2"}) {
    const RunResult result =
        runCommand(renderArguments(frameFile(1), folder_.file("out.exr"), {option}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.error.find("--frames"), std::string::npos) << result.error;
  }
}

TEST_F(Sequence, progress_isOfTheWholeAndEndsAt100) {
  Texts arguments =
      renderArguments(folder_.file("in.####.exr"), folder_.file("out.@.exr"), {"--frames", "1-6"});
  arguments.erase(arguments.begin() + 1);  // --quiet
  const RunResult result = runCommand(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  const Texts lines = linesStarting(result.error, "Progress: ");
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "Progress: 100%");
}

TEST_F(Sequence, reportsOfTheirOwn_areOnePerFrame) {
  ASSERT_EQ(render({"--frames", "1-2", "--report", folder_.file("r.#.json")}).exitCode, 0);
  for (const char* name : {"r.1.json", "r.2.json"}) {
    const auto report = nlohmann::json::parse(bytesOfFile(folder_.file(name)));
    EXPECT_TRUE(report.contains("controls")) << name;
  }
}

TEST_F(Sequence, reportOfAll_hasEveryFrameInOrder) {
  writeBytes(frameFile(2), "no picture");
  const RunResult result = render({"--frames", "1-3", "--skip-bad-frames", "--frames-in-flight",
                                   "3", "--report", folder_.file("r.json")});
  EXPECT_EQ(result.exitCode, 1);
  const auto report = nlohmann::json::parse(bytesOfFile(folder_.file("r.json")));
  ASSERT_EQ(report["frames"].size(), 3U);
  EXPECT_EQ(report["frames"][0]["frame"], 1);
  EXPECT_EQ(report["frames"][0]["output"], folder_.file("out.1.exr"));
  EXPECT_EQ(report["frames"][1]["exitCode"], 3);
  EXPECT_EQ(report["frames"][1]["errors"].size(), 1U);
  EXPECT_EQ(report["frames"][2]["exitCode"], 0);
}

// A sequence that takes far longer than the test waits.
class LongSequence : public ::testing::TestWithParam<std::pair<int, int>> {
 protected:
  ScratchFolder folder_;
};

TEST_P(LongSequence, signal_endsItSoonAndLeavesWholeFilesOnly) {
  PartFixture part = rgbazPart(600, 400, 0.0);
  part.channels.back().value = [](int x, int y) { return 1.0 + (x * 7919 + y * 104729) % 65521; };
  writeExrFixture(folder_.file("in.exr"), part);
  RunOptions options;
  options.signal = GetParam().first;
  options.signalAfterSeconds = 3.0;
  const RunResult result = runCommand(
      renderArguments(folder_.file("in.exr"), folder_.file("out.#.exr"),
                      {"--frames", "1-1000", "--frames-in-flight", "2", "--set", "multiplier=60",
                       "--set", "depthStyle=Real", "--set", "focalPlane=30000"}),
      options);
  EXPECT_EQ(result.exitCode, GetParam().second) << result.error;
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_LT(result.secondsAfterSignal, DREVIN_SANITIZED != 0 ? 10.0 : 5.0);
  for (const std::string& name : folder_.entries())
    EXPECT_TRUE(isWholePicture(folder_.file(name))) << name;
}

INSTANTIATE_TEST_SUITE_P(Signals, LongSequence,
                         ::testing::Values(std::pair{SIGINT, 130}, std::pair{SIGTERM, 143}));

// Small frames and signals from the first one on: whatever the threads are at, the run ends.
TEST_F(Sequence, signalAtAnyTime_endsIt) {
  const std::vector<std::vector<std::string>> manners = {
      {}, {"--frames-in-flight", "1", "--skip-bad-frames"}, {"--frames-in-flight", "3"}};
  for (const auto& manner : manners) {
    for (int moment = 1; moment <= 8; ++moment) {
      RunOptions options;
      options.signal = SIGTERM;
      options.signalAfterSeconds = 0.03 * moment * (DREVIN_SANITIZED != 0 ? 5 : 1);
      options.timeoutSeconds = 60.0;
      std::vector<std::string> more = {"--frames", "1-20000", "--report", folder_.file("r.json")};
      more.insert(more.end(), manner.begin(), manner.end());
      const RunResult result =
          runCommand(renderArguments(frameFile(1), folder_.file("out.#.exr"), more), options);
      EXPECT_EQ(result.exitCode, 143) << moment << " " << result.error;
      EXPECT_LT(result.secondsAfterSignal, 20.0) << moment;
    }
  }
}

TEST_F(Sequence, reportOfAll_isWrittenWhenItIsInterruptedToo) {
  RunOptions options;
  options.signal = SIGINT;
  options.signalWhen = [&] { return std::filesystem::exists(folder_.file("out.3.exr")); };
  const RunResult result =
      runCommand(renderArguments(frameFile(1), folder_.file("out.#.exr"),
                                 {"--frames", "1-100000", "--report", folder_.file("r.json")}),
                 options);
  EXPECT_EQ(result.exitCode, 130) << result.error;
  const auto report = nlohmann::json::parse(bytesOfFile(folder_.file("r.json")));
  EXPECT_GE(report["frames"].size(), 2U);
}

TEST(RealSequence, beachball_rendersWholeFrames) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  const RunResult result = runCommand(renderArguments(
      pictureFolder() + "/flat/beachball.singlepart.000#.exr", folder.file("ball.%04d.exr"),
      {"--frames", DREVIN_SANITIZED ? "1-2" : "1-4", "--set", "focalPlane=10", "--set",
       "multiplier=4"}));
  EXPECT_EQ(result.exitCode, 0) << result.error;
  Texts frames{"ball.0001.exr", "ball.0002.exr"};
  if (!DREVIN_SANITIZED) frames.insert(frames.end(), {"ball.0003.exr", "ball.0004.exr"});
  EXPECT_EQ(folder.entries(), frames);
  for (const std::string& name : folder.entries())
    EXPECT_TRUE(isWholePicture(folder.file(name))) << name;
}

}  // namespace
}  // namespace drevintool::testing
