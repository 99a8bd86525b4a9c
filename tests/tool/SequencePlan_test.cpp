#include "sequence/SequencePlan.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using testing::ScratchFolder;
using testing::writeBytes;

RenderArguments sequence(const std::string& input, const std::string& output) {
  RenderArguments arguments;
  arguments.input = input;
  arguments.output = output;
  arguments.frames = {1, 2};
  return arguments;
}

std::string failureOf(const RenderArguments& arguments) {
  try {
    const SequencePlan plan(arguments);
    plan.checkInputs();
    plan.checkOutputs();
  } catch (const ToolError& error) {
    return std::to_string(static_cast<int>(error.code())) + " " + error.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

TEST(SequencePlan, everyPath_hasTheFrameAndTheViewInItsPlace) {
  RenderArguments arguments = sequence("%V/in.####.exr", "out.%v.@@@.exr");
  arguments.views = {"left", "right"};
  arguments.deep = "d.%02d.exr";
  arguments.view = "%V";
  arguments.kernel = "k#.exr";
  arguments.mattes = "m@.exr";
  arguments.report = "r_%V_#.json";
  const SequencePlan plan(arguments);
  ASSERT_EQ(plan.tasks().size(), 4U);
  EXPECT_EQ(plan.tasks()[1].name(), "frame 1 right");
  const RenderArguments first = plan.argumentsOf(plan.tasks()[2]);
  EXPECT_EQ(first.input, "left/in.0002.exr");
  EXPECT_EQ(first.deep, "d.02.exr");
  EXPECT_EQ(first.view, "left");
  EXPECT_EQ(first.kernel, "k2.exr");
  EXPECT_EQ(first.mattes, "m2.exr");
  EXPECT_EQ(first.output, "out.l.002.exr");
  EXPECT_EQ(first.report, "r_left_2.json");
  EXPECT_TRUE(plan.reportsEach());
}

TEST(SequencePlan, onePicture_isNoSequenceAndHasNoName) {
  RenderArguments arguments = sequence("in.exr", "out.exr");
  arguments.frames.clear();
  const SequencePlan plan(arguments);
  EXPECT_FALSE(plan.isSequence());
  ASSERT_EQ(plan.tasks().size(), 1U);
  EXPECT_EQ(plan.tasks().front().name(), "");
  EXPECT_TRUE(plan.reportsEach());
}

TEST(SequencePlan, backslash_keepsASignInAName) {
  RenderArguments arguments = sequence("take\\#1.exr", "out.exr");
  arguments.frames.clear();
  const SequencePlan plan(arguments);
  EXPECT_EQ(plan.argumentsOf(plan.tasks().front()).input, "take#1.exr");
}

TEST(SequencePlan, placesOfOtherPrograms_areToldWithTheRemedy) {
  for (const char* place : {"%4d", "%04i", "$F4"}) {
    const std::string input = "in." + std::string(place) + ".exr";
    EXPECT_EQ(
        failureOf(sequence(input, "out.#.exr")),
        "2 --input " + input + ": " + place + " is no place for the frame; write %04d or ####");
  }
  const std::string line = failureOf(sequence("in.#.exr", "out.$F4.exr"));
  EXPECT_NE(line.find("--output out.$F4.exr: $F4 is no place"), std::string::npos) << line;
}

TEST(SequencePlan, filesThatAreNamedSo_areTaken) {
  const ScratchFolder folder;
  const std::string file = folder.file("in.%4d.exr");
  writeBytes(file, "a picture");
  const SequencePlan plan(sequence(file, "out.#.exr"));
  EXPECT_EQ(plan.argumentsOf(plan.tasks().front()).input, file);
  RenderArguments alone = sequence("in.%4d.exr", "out.exr");
  alone.frames.clear();
  EXPECT_EQ(SequencePlan(alone).tasks().size(), 1U) << "no sequence, no places";
}

TEST(SequencePlan, reportWithoutAPlace_isOneForAll) {
  RenderArguments arguments = sequence("in.#.exr", "out.#.exr");
  arguments.report = "r.json";
  const SequencePlan plan(arguments);
  EXPECT_FALSE(plan.reportsEach());
  EXPECT_EQ(plan.argumentsOf(plan.tasks().front()).report, "");
}

TEST(SequencePlan, placesWithoutFrames_nameTheOptionAndTheRemedy) {
  RenderArguments arguments = sequence("in.exr", "out.exr");
  arguments.frames.clear();
  const std::vector<std::pair<const char*, std::string RenderArguments::*>> paths = {
      {"--input", &RenderArguments::input},   {"--deep", &RenderArguments::deep},
      {"--kernel", &RenderArguments::kernel}, {"--mattes", &RenderArguments::mattes},
      {"--output", &RenderArguments::output}, {"--report", &RenderArguments::report}};
  for (const auto& [option, path] : paths) {
    RenderArguments changed = arguments;
    changed.*path = "a.####.exr";
    const std::string line = failureOf(changed);
    EXPECT_EQ(line.rfind(std::string("2 ") + option, 0), 0U) << line;
    EXPECT_NE(line.find("--frames"), std::string::npos) << line;
  }
}

TEST(SequencePlan, viewPlacesWithoutViews_nameTheRemedy) {
  const std::string line = failureOf(sequence("in.%V.#.exr", "out.#.exr"));
  EXPECT_NE(line.find("2 --input"), std::string::npos) << line;
  EXPECT_NE(line.find("--views"), std::string::npos) << line;
}

TEST(SequencePlan, outputWithoutAPlace_wouldBeOverwritten) {
  const std::string line = failureOf(sequence("in.#.exr", "out.exr"));
  EXPECT_EQ(line.rfind("2 --output out.exr: frame 2 would overwrite", 0), 0U) << line;
}

TEST(SequencePlan, oneFrame_needsNoPlace) {
  RenderArguments arguments = sequence("in.exr", "out.exr");
  arguments.frames = {12};
  EXPECT_EQ(SequencePlan(arguments).tasks().front().name(), "frame 12");
}

TEST(SequencePlan, viewsWithOneLetter_collide) {
  RenderArguments arguments = sequence("in.#.exr", "out.%v.#.exr");
  arguments.views = {"left", "low"};
  EXPECT_NE(failureOf(arguments).find("frame 1 low would overwrite out.l.1.exr"),
            std::string::npos);
}

TEST(SequencePlan, reportsThatCollide_areRefused) {
  RenderArguments arguments = sequence("in.#.exr", "out.%V.#.exr");
  arguments.views = {"left", "right"};
  arguments.report = "r.#.json";
  EXPECT_EQ(failureOf(arguments).rfind("2 --report", 0), 0U);
}

TEST(SequencePlan, inputsOfWhichNoneIsThere_areOneLine) {
  const ScratchFolder folder;
  const std::string line = failureOf(sequence(folder.file("in.##.exr"), folder.file("o.#.exr")));
  EXPECT_EQ(line.rfind("2 --input", 0), 0U) << line;
  EXPECT_NE(line.find("in.01.exr"), std::string::npos) << line;
}

TEST(SequencePlan, gap_isNamedBeforeAnythingIsRendered) {
  const ScratchFolder folder;
  writeBytes(folder.file("in.02.exr"), "x");
  RenderArguments arguments = sequence(folder.file("in.##.exr"), folder.file("o.#.exr"));
  arguments.frames = {1, 2, 3};
  const std::string line = failureOf(arguments);
  EXPECT_EQ(line.rfind("2 --input", 0), 0U) << line;
  EXPECT_NE(line.find("for frames 1,3,"), std::string::npos) << line;
  EXPECT_NE(line.find("in.01.exr"), std::string::npos) << line;
}

TEST(SequencePlan, missingFileOfAllFrames_isOneLineWhateverIsSkipped) {
  const ScratchFolder folder;
  for (const char* name : {"in.1.exr", "in.2.exr"})
    writeBytes(folder.file(name), "x");
  RenderArguments arguments = sequence(folder.file("in.#.exr"), folder.file("o.#.exr"));
  arguments.kernel = folder.file("k.exr");
  arguments.skipBadFrames = true;
  EXPECT_EQ(failureOf(arguments).rfind("3 --kernel " + folder.file("k.exr"), 0), 0U);
  arguments.kernel.clear();
  arguments.camera = "header";
  EXPECT_NO_THROW(SequencePlan(arguments).checkInputs());
}

TEST(SequencePlan, gapOfAView_isNamedWithIt) {
  const ScratchFolder folder;
  for (const char* name : {"left.1.exr", "left.2.exr", "left.3.exr", "right.2.exr"})
    writeBytes(folder.file(name), "x");
  RenderArguments arguments = sequence(folder.file("%V.#.exr"), folder.file("o.%V.#.exr"));
  arguments.frames = {1, 2, 3};
  arguments.views = {"left", "right"};
  const std::string line = failureOf(arguments);
  EXPECT_NE(line.find("for frames 1,3 right,"), std::string::npos) << line;
}

TEST(SequencePlan, reportInThePlaceOfAnotherFile_isRefused) {
  const ScratchFolder folder;
  writeBytes(folder.file("in.1.exr"), "x");
  std::filesystem::create_symlink(folder.file("in.1.exr"), folder.file("link.json"));
  RenderArguments arguments = sequence(folder.file("in.#.exr"), folder.file("o.#.exr"));
  arguments.kernel = folder.file("k.exr");
  arguments.script = folder.file("s.nk");
  for (const char* report : {"in.#.exr", "in.1.exr", "o.#.exr", "o.2.exr", "k.exr", "s.nk",
                             "./nowhere/../o.1.exr", "link.json"}) {
    arguments.report = folder.file(report);
    EXPECT_EQ(failureOf(arguments).rfind("2 --report", 0), 0U) << report;
  }
  arguments.report = folder.file("r.json");
  EXPECT_NO_THROW(SequencePlan{arguments});
}

TEST(SequencePlan, outputInThePlaceOfWhatItIsMadeOf_isRefused) {
  const ScratchFolder folder;
  const RenderArguments free = sequence(folder.file("in.#.exr"), folder.file("o.#.exr"));
  for (std::string RenderArguments::*path :
       {&RenderArguments::deep, &RenderArguments::kernel, &RenderArguments::mattes}) {
    RenderArguments arguments = free;
    arguments.*path = folder.file("o.2.exr");
    EXPECT_EQ(failureOf(arguments).rfind("2 --output", 0), 0U) << failureOf(arguments);
  }
}

TEST(SequencePlan, outputInThePlaceOfTheCamera_isRefused) {
  const ScratchFolder folder;
  writeBytes(folder.file("cam.json"), "{}");
  std::filesystem::create_symlink(folder.file("cam.json"), folder.file("o.2.exr"));
  RenderArguments arguments = sequence(folder.file("in.#.exr"), folder.file("o.#.exr"));
  arguments.camera = folder.file("cam.json");
  const std::string line = failureOf(arguments);
  EXPECT_EQ(line.rfind("2 --output", 0), 0U) << line;
  EXPECT_NE(line.find("the file of --camera"), std::string::npos) << line;
  arguments.camera = "focalLength=50";
  EXPECT_NO_THROW(SequencePlan{arguments});
}

TEST(SequencePlan, outputInThePlaceOfItsInput_isWhatOneMayWantUnlessItIsSkipped) {
  const ScratchFolder folder;
  RenderArguments arguments = sequence(folder.file("in.#.exr"), folder.file("in.#.exr"));
  EXPECT_NO_THROW(SequencePlan{arguments});
  EXPECT_THROW(SequencePlan(arguments).checkInputsStay(), ToolError);
  arguments.skipExisting = true;
  EXPECT_NE(failureOf(arguments).find("be skipped as there already"), std::string::npos);
}

TEST(SequencePlan, outputInThePlaceOfAnotherFramesInput_isRefused) {
  const ScratchFolder folder;
  RenderArguments arguments = sequence(folder.file("o.2.exr"), folder.file("o.#.exr"));
  const std::string line = failureOf(arguments);
  EXPECT_EQ(line.rfind("2 --output", 0), 0U) << line;
  EXPECT_NE(line.find("the file of --input that frame 1 is made of too"), std::string::npos)
      << line;
  arguments.frames = {2};
  EXPECT_NO_THROW(SequencePlan{arguments}) << "one picture may be blurred in its place";
  arguments.frames = {1, 3};
  EXPECT_NO_THROW(SequencePlan{arguments}) << "that frame is not written";
}

TEST(SequencePlan, outputInThePlaceOfAnotherViewsInput_isRefused) {
  const ScratchFolder folder;
  RenderArguments arguments = sequence(folder.file("a.left.#.exr"), folder.file("a.%V.#.exr"));
  arguments.views = {"left", "right"};
  EXPECT_NE(failureOf(arguments).find("that frame 1 right is made of too"), std::string::npos);
  arguments.frames.clear();
  arguments.input = folder.file("a.right.exr");
  arguments.output = folder.file("a.%V.exr");
  EXPECT_NE(failureOf(arguments).find("that view left is made of too"), std::string::npos);
}

TEST(SequencePlan, inputThatIsALinkToAnotherFramesOutput_isRefused) {
  const ScratchFolder folder;
  writeBytes(folder.file("o.2.exr"), "x");
  std::filesystem::create_symlink(folder.file("o.2.exr"), folder.file("in.exr"));
  const std::string line = failureOf(sequence(folder.file("in.exr"), folder.file("o.#.exr")));
  EXPECT_EQ(line.rfind("2 --output", 0), 0U) << line;
}

TEST(SequencePlan, cameraFileInThePlaceOfAnOutput_isRefused) {
  const ScratchFolder folder;
  RenderArguments arguments = sequence(folder.file("in.#.exr"), folder.file("o.#.exr"));
  arguments.camera = folder.file("o.1.exr");
  EXPECT_NE(failureOf(arguments).find("the file of --camera"), std::string::npos);
  for (const char* camera : {"header", "focalLength=50"}) {
    arguments.camera = camera;
    EXPECT_NO_THROW(SequencePlan{arguments}) << camera;
  }
}

TEST(SequencePlan, outputsThatLinksLeadToOnePlace_areRefused) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder.file("left"));
  std::filesystem::create_directory_symlink("left", folder.file("right"));
  RenderArguments arguments = sequence(folder.file("in.exr"), folder.file("%V/o.#.exr"));
  arguments.views = {"left", "right"};
  EXPECT_NE(failureOf(arguments).find("frame 1 right would overwrite"), std::string::npos);
  std::filesystem::create_symlink("p.1.exr", folder.file("p.2.exr"));
  writeBytes(folder.file("p.1.exr"), "x");
  EXPECT_NE(failureOf(sequence(folder.file("in.exr"), folder.file("p.#.exr")))
                .find("frame 2 would overwrite"),
            std::string::npos);
}

TEST(SequencePlan, namesOfTheSameBytes_areOutputsOfTheirOwn) {
  const ScratchFolder folder;
  writeBytes(folder.file("o.1.exr"), "x");
  std::filesystem::create_hard_link(folder.file("o.1.exr"), folder.file("o.2.exr"));
  EXPECT_NO_THROW(SequencePlan(sequence(folder.file("in.exr"), folder.file("o.#.exr"))))
      << "each is replaced by a file of its own";
}

TEST(SequencePlan, framesTimesViews_areLimited) {
  RenderArguments arguments = sequence("in.exr", "%V.#.exr");
  arguments.frames.assign(400000, 1);
  arguments.views = {"a", "b", "c"};
  EXPECT_NE(failureOf(arguments).find("more than 1000000 pictures"), std::string::npos);
}

TEST(SequencePlan, gapWhereBadFramesAreSkipped_isLetPass) {
  const ScratchFolder folder;
  writeBytes(folder.file("in.02.exr"), "x");
  RenderArguments arguments = sequence(folder.file("in.##.exr"), folder.file("o.#.exr"));
  arguments.skipBadFrames = true;
  const SequencePlan plan(arguments);
  EXPECT_NO_THROW(plan.checkInputs());
  EXPECT_NO_THROW(plan.checkOutputs());
}

TEST(SequencePlan, gapWhereTheOutputMayStay_needsNoInput) {
  const ScratchFolder folder;
  for (const char* name : {"in.02.exr", "o.1.exr"})
    writeBytes(folder.file(name), "x");
  RenderArguments arguments = sequence(folder.file("in.##.exr"), folder.file("o.#.exr"));
  EXPECT_THROW(SequencePlan(arguments).checkInputs(), ToolError);
  arguments.skipExisting = true;
  EXPECT_NO_THROW(SequencePlan(arguments).checkInputs());
}

TEST(SequencePlan, folderOfOneFrameThatIsMissing_isNamed) {
  const ScratchFolder folder;
  writeBytes(folder.file("in.exr"), "x");
  EXPECT_EQ(failureOf(sequence(folder.file("in.exr"), folder.file("no_#/o.exr"))).rfind("4 ", 0),
            0U);
}

}  // namespace
}  // namespace drevintool
