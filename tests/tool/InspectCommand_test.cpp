#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "CommandRun.h"
#include "DeepExrFixture.h"
#include "ExrFixture.h"
#include "OddNumbers.h"
#include "RealPictures.h"
#include "ScratchFolder.h"
#include "terminal/NameList.h"
#include "terminal/OneLine.h"

namespace drevintool::testing {
namespace {

using nlohmann::ordered_json;
using Arguments = std::vector<std::string>;

RunResult inspect(const Arguments& more) {
  Arguments arguments = {"inspect", "--plugin", builtPlugin()};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runCommand(arguments);
}

ordered_json inspectJson(const Arguments& more) {
  Arguments arguments = {"--json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const RunResult result = inspect(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  return ordered_json::parse(result.out);
}

// The channel of that name, wherever its layer stands.
ordered_json channelOf(const ordered_json& file, const std::string& name) {
  for (const ordered_json& layer : file["layers"]) {
    for (const ordered_json& channel : layer["channels"]) {
      if (channel["name"] == name) return channel;
    }
  }
  return nullptr;
}

class InspectCommand : public ::testing::Test {
 protected:
  ordered_json inspectPart(const PartFixture& part, const Arguments& more = {}) const {
    writeExrFixture(file_, part);
    Arguments arguments = {file_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return inspectJson(arguments).at(0);
  }

  ordered_json inspectDeep(const DeepPartFixture& part) const {
    writeDeepFixture(file_, {part});
    return inspectJson({file_}).at(0)["deep"];
  }

  ScratchFolder folder_;
  std::string file_ = folder_.file("in.exr");
};

TEST_F(InspectCommand, placesThatNothingIsThereFor_areRefusedWithTheRemedy) {
  for (const auto& [path, words] : std::vector<std::pair<std::string, std::string>>{
           {"a.####.exr", "give --frames FIRST-LAST"},
           {"v/%V/a.exr", "has a place for a view"},
           {"v/%V/a.####.exr", "give --frames FIRST-LAST"}}) {
    const RunResult result = inspect({path});
    EXPECT_EQ(result.exitCode, 2) << path;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
  }
  const RunResult view = inspect({"v/%V/a.####.exr", "--frames", "1"});
  EXPECT_EQ(view.exitCode, 2);
  EXPECT_NE(view.error.find("has a place for a view"), std::string::npos) << view.error;
}

TEST_F(InspectCommand, flatPicture_hasItsWindowsAndTypes) {
  PartFixture part = rgbazPart(20, 10, 12.5);
  part.data = Imath::Box2i({-2, 1}, {15, 8});
  part.pixelAspect = 2.0F;
  part.compression = Imf::PIZ_COMPRESSION;
  const ordered_json file = inspectPart(part);
  EXPECT_EQ(file["file"], file_);
  EXPECT_EQ(file["format"], ordered_json::parse(R"({"width":20,"height":10,"pixelAspect":2.0})"));
  ASSERT_EQ(file["parts"].size(), 1U);
  EXPECT_EQ(file["parts"][0]["dataWindow"], ordered_json::parse("[-2,1,15,8]"));
  EXPECT_EQ(file["parts"][0]["displayWindow"], ordered_json::parse("[0,0,19,9]"));
  EXPECT_EQ(file["parts"][0]["compression"], "piz");
  EXPECT_EQ(channelOf(file, "R")["type"], "half");
  EXPECT_EQ(channelOf(file, "Z")["type"], "float");
  EXPECT_EQ(channelOf(file, "Z")["min"], 12.5);
  EXPECT_TRUE(file["deep"].is_null());
  EXPECT_EQ(file["depth"]["channel"], "Z");
}

TEST_F(InspectCommand, valuesThatAreNotFinite_areCountedAndNoRange) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.channels[0].value = [](int x, int y) {
    return y == 0 ? kNan : x == 0 ? kInfinity : x - 3.0;
  };
  const ordered_json channel = channelOf(inspectPart(part), part.channels[0].name);
  EXPECT_EQ(channel["nan"], 8);
  EXPECT_EQ(channel["infinite"], 3);
  EXPECT_EQ(channel["min"], -2.0);
  EXPECT_EQ(channel["max"], 4.0);
}

TEST_F(InspectCommand, channelWithoutFiniteValue_hasNoRange) {
  PartFixture part = rgbazPart(8, 4, kInfinity);
  const ordered_json file = inspectPart(part);
  EXPECT_TRUE(channelOf(file, "Z")["min"].is_null());
  EXPECT_EQ(file["depth"]["background"]["value"], "inf");
  EXPECT_TRUE(file["depth"]["near"].is_null());
}

TEST_F(InspectCommand, ranges_areOverThePixelsOfTheChannelsPart) {
  PartFixture colours = rgbazPart(20, 10, 5.0);
  colours.channels.pop_back();
  colours.name = "colours";
  PartFixture depth = rgbazPart(20, 10, 5.0);
  depth.channels.erase(depth.channels.begin(), depth.channels.end() - 1);
  depth.data = Imath::Box2i({4, 4}, {9, 7});
  depth.name = "depth";
  writeMultiPartFixture(file_, {colours, depth});
  const ordered_json file = inspectJson({file_}).at(0);
  EXPECT_EQ(channelOf(file, "Z")["min"], 5.0);
  EXPECT_EQ(file["depth"]["pixels"], 24);
  EXPECT_TRUE(file["depth"]["background"].is_null());
}

TEST_F(InspectCommand, depthChannel_isTheOneThatRenderTakes) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.channels.push_back({"left.Z", Imf::FLOAT, [](int, int) { return 7.0; }});
  part.channels.push_back({"normals.X", Imf::FLOAT, [](int, int) { return 0.5; }});
  part.channels.push_back({"normals.Z", Imf::FLOAT, [](int, int) { return 0.5; }});
  const ordered_json usual = inspectPart(part);
  EXPECT_EQ(usual["depth"]["channel"], "Z");
  EXPECT_EQ(usual["depth"]["others"], ordered_json::parse(R"(["left.Z"])"));
  const ordered_json set = inspectPart(part, {"--set", "depthChannel=left.Z"});
  EXPECT_EQ(set["depth"]["channel"], "left.Z");
  EXPECT_EQ(set["depth"]["near"], 7.0);
}

TEST_F(InspectCommand, pictureWithoutDepth_saysWhichChannelWouldDo) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.channels.back().name = "depth.left";
  const ordered_json file = inspectPart(part);
  EXPECT_TRUE(file["depth"]["channel"].is_null());
  EXPECT_EQ(file["depth"]["others"], ordered_json::parse(R"(["depth.left"])"));
  EXPECT_NE(inspect({file_}).out.find("--set depthChannel=NAME"), std::string::npos);
}

TEST_F(InspectCommand, distancesIn1OverZ_areInSceneUnits) {
  PartFixture part = rgbazPart(8, 4, 0.0);
  part.channels.back().value = [](int x, int) { return x < 4 ? 0.0 : 0.25; };
  const ordered_json depth = inspectPart(part)["depth"];
  EXPECT_EQ(depth["style"]["guess"], "1/z");
  EXPECT_EQ(depth["near"], 4.0);
  EXPECT_EQ(depth["far"], 4.0);
  EXPECT_EQ(depth["pixels"], 16);
  EXPECT_EQ(depth["background"]["value"], 0.0);
}

TEST_F(InspectCommand, averagedEdge_isCounted) {
  PartFixture part = rgbazPart(12, 5, 0.0);
  part.channels.back().value = [](int x, int) { return x < 6 ? 5.0 : x == 6 ? 9.0 : 20.0; };
  EXPECT_EQ(inspectPart(part)["depth"]["mixedPixels"], 5);
}

TEST_F(InspectCommand, deepSamples_areCountedByWhatIsOddAboutThem) {
  DeepPartFixture part = opaqueDeepPart(6, 1, 0.0);
  part.channels.push_back({"ZBack", Imf::FLOAT});
  part.samples = [](int x, int) {
    const auto sample = [](double alpha, double front, double back) {
      return std::vector<double>{alpha, 0.25, 0.5, 0.75, front, back};
    };
    const std::vector<DeepPixelFixture> pixels = {
        {},
        {sample(0.5, 3, 3)},                       // a point
        {sample(0.5, 3, 5), sample(0.5, 4, 6)},    // overlap
        {sample(0.5, 9, 9), sample(0.5, 2, 2)},    // not nearest first
        {sample(1.5, 4, 2)},                       // too opaque, back before front
        {sample(0.5, 1, 2), sample(0.5, 2, kNan)}  // touching; not finite
    };
    return pixels[static_cast<std::size_t>(x)];
  };
  const ordered_json deep = inspectDeep(part);
  EXPECT_EQ(deep["samples"]["all"], 8);
  EXPECT_EQ(deep["samples"]["mostPerPixel"], 2);
  EXPECT_EQ(deep["samples"]["medianPerPixel"], 1);
  EXPECT_EQ(deep["pixels"], 6);
  EXPECT_EQ(deep["emptyPixels"], 1);
  EXPECT_EQ(deep["thick"], 3);
  EXPECT_EQ(deep["inverted"], 1);
  EXPECT_EQ(deep["points"], 4);
  EXPECT_EQ(deep["overlappingPixels"], 1);
  // Of the two that overlap the farther comes to three; a back that is no number cuts nothing.
  EXPECT_EQ(deep["pieces"], 10);
  EXPECT_EQ(deep["unsortedPixels"], 1);
  EXPECT_EQ(deep["alphaAboveOne"], 1);
  EXPECT_EQ(deep["notFinite"], 1);
  EXPECT_EQ(deep["near"], 1.0);
  EXPECT_EQ(deep["far"], 9.0);
}

TEST_F(InspectCommand, deepChannels_haveTheirNamesAndTypesInTheFile) {
  DeepPartFixture part = opaqueDeepPart(4, 1, 2.0);
  part.channels.front().type = Imf::HALF;
  const std::string first = part.channels.front().name;
  const ordered_json channels = inspectDeep(part)["channels"];
  const auto named = [&](const char* key, const std::string& name) {
    const auto found =
        std::find_if(channels.begin(), channels.end(),
                     [&](const ordered_json& channel) { return channel[key] == name; });
    return found == channels.end() ? ordered_json() : *found;
  };
  EXPECT_EQ(named("name", first)["type"], "half") << channels;
  EXPECT_EQ(named("name", "Z")["type"], "float") << channels;
  EXPECT_EQ(named("name", "Z")["hostName"], "deep.front") << channels;
  // The file has no back; the host is given one.
  EXPECT_TRUE(named("hostName", "deep.back")["name"].is_null()) << channels;
  EXPECT_TRUE(named("hostName", "deep.back")["type"].is_null()) << channels;
  const RunResult text = inspect({file_});
  EXPECT_NE(text.out.find("    deep.back            none   2 (made: the file has none)\n"),
            std::string::npos)
      << text.out;
  EXPECT_NE(text.out.find("    Z                    float  2\n"), std::string::npos) << text.out;
}

TEST_F(InspectCommand, deepValuesThatAreNotFinite_areCountedByChannel) {
  DeepPartFixture part = opaqueDeepPart(3, 1, 2.0);
  part.samples = [](int x, int) {
    const double odd = x == 0 ? kNan : x == 1 ? kInfinity : 0.5;
    return DeepPixelFixture{{1.0, 0.25, odd, 0.75, 2.0}};
  };
  const ordered_json channels = inspectDeep(part)["channels"];
  std::uint64_t nan = 0;
  std::uint64_t infinite = 0;
  for (const ordered_json& channel : channels) {
    nan += channel["nan"].get<std::uint64_t>();
    infinite += channel["infinite"].get<std::uint64_t>();
    EXPECT_EQ(channel["nan"], channel["infinite"]) << channel;
  }
  EXPECT_EQ(nan, 1U) << channels;
  EXPECT_EQ(infinite, 1U) << channels;
  const RunResult text = inspect({file_});
  EXPECT_NE(text.out.find("0.5, 1 NaN, 1 infinite\n"), std::string::npos) << text.out;
}

TEST_F(InspectCommand, deepDepths_areDistancesInAUnitOfTheirNearestSamples) {
  DeepPartFixture part = opaqueDeepPart(4, 1, 0.0);
  // Behind the first samples lies what is far too far away for metres.
  part.samples = [](int x, int) {
    const double near = 2.0 + x;
    if (x == 3) return DeepPixelFixture{};
    return DeepPixelFixture{{1.0, 0.25, 0.5, 0.75, near}, {1.0, 0.25, 0.5, 0.75, 900.0}};
  };
  const ordered_json deep = inspectDeep(part);
  EXPECT_EQ(deep["style"]["guess"], "Real");
  EXPECT_EQ(deep["medianNearest"], 3.0);
  EXPECT_EQ(deep["unit"]["guess"], "m");
  const RunResult text = inspect({file_});
  EXPECT_NE(text.out.find("\n    style       Real (depths of deep samples are distances always)\n"),
            std::string::npos)
      << text.out;
  EXPECT_NE(text.out.find("\n    unit        m (a guess: "), std::string::npos) << text.out;
  EXPECT_NE(text.out.find("2 to 900, median 3 of the nearest samples"), std::string::npos)
      << text.out;
}

TEST_F(InspectCommand, deepPictureWithoutSamples_hasNoUnit) {
  DeepPartFixture part = opaqueDeepPart(3, 2, 2.0);
  part.samples = [](int, int) { return DeepPixelFixture{}; };
  const ordered_json deep = inspectDeep(part);
  EXPECT_TRUE(deep["unit"].is_null());
  EXPECT_TRUE(deep["medianNearest"].is_null());
}

TEST_F(InspectCommand, fileThatCannotBeRead_leavesTheOthersTold) {
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  const std::string bad = folder_.file("bad.exr");
  writeBytes(bad, "no picture");
  const RunResult result = inspect({bad, file_});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  EXPECT_NE(result.error.find(bad), std::string::npos);
  EXPECT_NE(result.out.find(file_ + "\n"), std::string::npos);
  const RunResult json = inspect({"--json", bad, file_});
  EXPECT_EQ(json.exitCode, 3);
  const ordered_json files = ordered_json::parse(json.out);
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0]["file"], bad);
  EXPECT_TRUE(files[0].contains("error"));
  EXPECT_EQ(files[1]["depth"]["channel"], "Z");
}

TEST_F(InspectCommand, filesThatFailForDifferentReasons_leaveTheOthersToldAndTheHighestCode) {
  const std::string large = folder_.file("large.exr");
  const std::string missing = folder_.file("missing.exr");
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  writeExrFixture(large, rgbazPart(3000, 2000, 5.0));
  const char* limit = DREVIN_SANITIZED ? "200M" : "100M";
  const RunResult result = inspect({missing, "--max-memory", limit, large, file_});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(linesStarting(result.error, "drevin: error: " + missing + ": ").size(), 1U);
  EXPECT_EQ(linesStarting(result.error, "drevin: error: " + large + ": needs ").size(), 1U);
  EXPECT_EQ(linesStarting(result.error, "drevin: ").size(), 2U) << result.error;
  EXPECT_EQ(result.out.rfind(file_ + "\n", 0), 0U);
}

// The node refuses channels of the one picture only.
TEST_F(InspectCommand, channelThatOnePictureLacks_leavesTheOthersTold) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  writeExrFixture(file_, part);
  part.channels.push_back({"left.Z", Imf::FLOAT, [](int, int) { return 7.0; }});
  const std::string other = folder_.file("other.exr");
  writeExrFixture(other, part);
  const RunResult result = inspect({"--json", "--set", "depthChannel=left.Z", file_, other});
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
  const ordered_json files = ordered_json::parse(result.out);
  ASSERT_EQ(files.size(), 2U);
  EXPECT_NE(files[0]["error"].get<std::string>().find(file_), std::string::npos);
  EXPECT_EQ(files[1]["depth"]["near"], 7.0);
}

TEST_F(InspectCommand, addressSpaceThatEnds_leavesTheSmallPictureTold) {
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more address space";
  const std::string large = folder_.file("large.exr");
  writeExrFixture(large, rgbazPart(3000, 2000, 5.0));
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  int failures = 0;
  for (std::size_t mebibytes = 100; mebibytes <= 400; mebibytes += 50) {
    RunOptions options;
    options.addressSpace = mebibytes << 20U;
    // More than the space allows is taken for granted, so that it ends in the middle.
    const RunResult result = runCommand({"inspect", "--max-memory", "9G", large, file_}, options);
    EXPECT_NE(result.out.find(file_ + "\n"), std::string::npos) << mebibytes;
    if (result.exitCode == 0) continue;
    ++failures;
    EXPECT_TRUE(isOneErrorLine(result.error)) << mebibytes << ": " << result.error;
    EXPECT_NE(result.error.find(large + ": not enough memory"), std::string::npos) << result.error;
  }
  EXPECT_GT(failures, 0);
}

// Faults of the controls are the fault of no file.
TEST_F(InspectCommand, controlsThatAreWrong_areOneLineForAllFiles) {
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  for (const Arguments& wrong :
       {Arguments{"--set", "multiplier=many"}, Arguments{"--set", "multiplier@1=9"}}) {
    const RunResult result = inspect({file_, file_, wrong[0], wrong[1]});
    EXPECT_EQ(result.exitCode, 2) << wrong[1];
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_EQ(result.out, "");
  }
  const RunResult camera = inspect({file_, file_, "--camera", folder_.file("none.json")});
  EXPECT_NE(camera.exitCode, 0);
  EXPECT_TRUE(isOneErrorLine(camera.error)) << camera.error;
}

TEST_F(InspectCommand, withoutPlugin_saysTheSame) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.channels.push_back({"left.Z", Imf::FLOAT, [](int, int) { return 7.0; }});
  writeExrFixture(file_, part);
  const std::string deep = folder_.file("deep.exr");
  writeDeepFixture(deep, {opaqueDeepPart(8, 4, 150.0)});
  RunOptions nowhere;
  nowhere.environment["DREVIN_PLUGIN"] = folder_.file("none.so");
  const RunResult without = runCommand({"inspect", "--json", file_, deep}, nowhere);
  EXPECT_EQ(without.exitCode, 0) << without.error;
  EXPECT_EQ(without.out, inspect({"--json", file_, deep}).out);
  const RunResult predicted = runCommand({"inspect", file_, "--set", "multiplier=9"}, nowhere);
  EXPECT_EQ(predicted.exitCode, 5);
  EXPECT_TRUE(isOneErrorLine(predicted.error)) << predicted.error;
  EXPECT_EQ(runCommand({"inspect", file_, "--plugin", folder_.file("none.so")}).exitCode, 5);
}

TEST(RealInspection, cameraOfTheHeaderWithoutPlugin_isTheSame) {
  SKIP_WITHOUT_PICTURES();
  const std::string file = pictureFolder() + "/meta/cornellBox.cryptomatte.0001.exr";
  RunOptions nowhere;
  nowhere.environment["DREVIN_PLUGIN"] = "/nowhere";
  EXPECT_EQ(runCommand({"inspect", file}, nowhere).out, inspect({file}).out);
}

TEST_F(InspectCommand, styleOtherThanTheRenders_isOneLine) {
  PartFixture part = rgbazPart(8, 4, 0.0);
  part.channels.back().value = [](int x, int) { return x < 4 ? 0.0 : 0.25; };
  EXPECT_EQ(inspectPart(part)["depth"]["style"]["control"], "Real");
  const std::string line = "a render takes it as ";
  EXPECT_NE(inspect({file_}).out.find(line + "Real; --set depthStyle=1/z follows"),
            std::string::npos);
  EXPECT_EQ(inspect({file_, "--set", "depthStyle=1/z"}).out.find(line), std::string::npos);
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  EXPECT_EQ(inspect({file_}).out.find(line), std::string::npos);
  EXPECT_NE(inspect({file_, "--set", "depthStyle=1/z"}).out.find(line + "1/z; --set depthStyle=R"),
            std::string::npos);
}

TEST_F(InspectCommand, longChannelNames_areShortInTheTextAndWholeInJson) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  const std::string longName = "layer." + std::string(230, 'x') + ".red";
  std::string accents;
  for (int i = 0; i < 100; ++i)
    accents += "\xc3\xa9";
  part.channels.push_back({longName, Imf::FLOAT, [](int, int) { return 7.0; }});
  part.channels.push_back({"l." + accents, Imf::FLOAT, [](int, int) { return 8.0; }});
  const ordered_json file = inspectPart(part);
  EXPECT_EQ(channelOf(file, longName)["min"], 7.0);
  const RunResult text = inspect({file_});
  std::set<std::size_t> columns;
  std::size_t channels = 0;
  for (const std::string& line : linesStarting(text.out, "    ")) {
    const std::size_t type = std::min(line.find(" half "), line.find(" float "));
    if (type == std::string::npos) continue;
    ++channels;
    columns.insert(characters(line.substr(0, type)));
  }
  EXPECT_EQ(channels, 7U) << text.out;
  EXPECT_EQ(columns.size(), 1U) << text.out;
  EXPECT_LT(*columns.begin(), 50U) << text.out;
  EXPECT_NE(text.out.find("xxx.red "), std::string::npos) << text.out;
  EXPECT_EQ(text.out.find(std::string(70, 'x')), std::string::npos) << text.out;
  EXPECT_EQ(oneLine(text.out).find('?'), std::string::npos) << "characters are whole";
}

TEST_F(InspectCommand, sequence_isToldFrameByFrame) {
  writeExrFixture(folder_.file("a.0001.exr"), rgbazPart(8, 4, 5.0));
  writeExrFixture(folder_.file("a.0003.exr"), rgbazPart(8, 4, 6.0));
  const ordered_json files = inspectJson({folder_.file("a.####.exr"), "--frames", "1-3x2"});
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[0]["depth"]["near"], 5.0);
  EXPECT_EQ(files[1]["depth"]["near"], 6.0);
}

TEST_F(InspectCommand, placeForAFrameWithoutFrames_isRefused) {
  const RunResult result = inspect({folder_.file("a.####.exr")});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_NE(result.error.find("--frames"), std::string::npos);
}

TEST_F(InspectCommand, withoutFile_isRefused) {
  EXPECT_EQ(inspect({}).exitCode, 2);
  EXPECT_EQ(inspect({""}).exitCode, 2);
}

TEST_F(InspectCommand, text_hasALineForEachMatter) {
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  const RunResult result = inspect({file_});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  for (const char* begin : {"  format ", "  part ", "  layer ", "    Z ", "  depth ", "    style ",
                            "    distances ", "    background ", "    edges ", "  camera "})
    EXPECT_NE(result.out.find(std::string("\n") + begin), std::string::npos) << begin;
}

// The node's own word for the largest blur: it warns where a limit of one pixel is below it.
int largestByWarning(std::vector<std::string> render) {
  render.insert(render.end(), {"--set", "max_kernelsize=1"});
  const RunResult result = runCommand(render);
  EXPECT_EQ(result.exitCode, 0) << result.error;
  const std::size_t place = result.error.find("max kernel size above ");
  if (place == std::string::npos) return 1;
  return std::stoi(result.error.substr(place + std::string("max kernel size above ").size()));
}

Arguments with(Arguments first, const Arguments& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

const std::vector<Arguments> kRenders = {
    {"--set", "multiplier=30", "--set", "focalPlane=12", "--set", "focusRegionSize=20"},
    {"--set", "multiplier=30", "--set", "focalPlane=12", "--set", "focusRegionSize=20", "--set",
     "frontmultiplier=2", "--set", "focusRegionFalloff=Quadratic"},
    {"--set", "realWorldLens=1", "--set", "worldScale=m", "--camera",
     "focalLength=50,fStop=1.4,focalPlane=2.7,horizontalAperture=36,verticalAperture=24"}};

TEST_F(InspectCommand, blurOfBothSides_isThatOfTheNode) {
  PartFixture part = rgbazPart(8, 4, 0.0);
  part.channels.back().value = [](int x, int) { return x < 4 ? 7.0 : 13.0; };
  const ordered_json prediction =
      inspectPart(part, {"--set", "focalPlane=10", "--set", "focusRegionSize=12", "--set",
                         "multiplier=20", "--set", "frontmultiplier=2"})["prediction"];
  EXPECT_NEAR(prediction["front"].get<double>(), 20.0, 1e-4);  // 3 of 6 units, 2 times 20 px
  EXPECT_NEAR(prediction["back"].get<double>(), 10.0, 1e-4);
  EXPECT_EQ(prediction["largestKernel"], 20);
  EXPECT_EQ(prediction["kernels"], 11);
  EXPECT_EQ(prediction["limit"], 256);
}

TEST_F(InspectCommand, infinitelyFarDepths_doNotCountForTheBlur) {
  PartFixture part = rgbazPart(8, 4, 0.0);
  part.channels.back().value = [](int x, int) { return x < 4 ? 5.0 : kInfinity; };
  const Arguments& lens = kRenders.back();
  const ordered_json prediction = inspectPart(part, lens)["prediction"];
  EXPECT_LT(prediction["back"].get<double>(), 100.0);
  EXPECT_EQ(prediction["largestKernel"],
            largestByWarning(renderArguments(file_, folder_.file("out.exr"), lens)));
}

TEST_F(InspectCommand, limitOfTheKernels_isKeptAndTold) {
  writeExrFixture(file_, rgbazPart(8, 4, 200.0));
  const Arguments limited = {file_, "--set", "multiplier=90", "--set", "max_kernelsize=31"};
  EXPECT_EQ(inspectJson(limited).at(0)["prediction"]["largestKernel"], 31);
  EXPECT_NE(inspect(limited).out.find("limited to 31 px by max_kernelsize"), std::string::npos);
}

TEST_F(InspectCommand, withoutControlsOrDepth_predictsNothing) {
  EXPECT_TRUE(inspectPart(rgbazPart(8, 4, 5.0))["prediction"].is_null());
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.channels.pop_back();
  EXPECT_TRUE(inspectPart(part, {"--set", "multiplier=9"})["prediction"].is_null());
}

TEST_F(InspectCommand, apertureImageThatIsNotThere_isNoFaultOfThePrediction) {
  const ordered_json prediction = inspectPart(
      rgbazPart(8, 4, 200.0), {"--set", "multiplier=9", "--set", "kernelType=Input"})["prediction"];
  EXPECT_EQ(prediction["back"], 9.0);
}

TEST_F(InspectCommand, pictureOf1OverZ_isPredictedInThatStyle) {
  PartFixture part = rgbazPart(8, 4, 0.0);
  part.channels.back().value = [](int x, int) { return x < 4 ? 0.0 : 0.125; };
  const Arguments controls = {"--set", "depthStyle=1/z",    "--set", "focalPlane=10",
                              "--set", "focusRegionSize=8", "--set", "multiplier=20"};
  const ordered_json prediction = inspectPart(part, controls)["prediction"];
  EXPECT_NEAR(prediction["front"].get<double>(), 10.0, 1e-4);  // 8 is 2 of 4 units away
  EXPECT_EQ(prediction["back"], 0.0);
  EXPECT_EQ(prediction["largestKernel"],
            largestByWarning(renderArguments(file_, folder_.file("out.exr"), controls)));
}

TEST_F(InspectCommand, costOfARender_isEstimated) {
  PartFixture part = rgbazPart(400, 300, 0.0);
  part.channels.back().value = [](int x, int) { return 90.0 + 0.1 * x; };
  const ordered_json estimate =
      inspectPart(part, {"--set", "multiplier=9"})["prediction"]["estimate"];
  EXPECT_GT(estimate["seconds"].get<double>(), 0.0);
  // Four channels and the depth, as floats, and the result.
  EXPECT_GT(estimate["memoryBytes"].get<double>(), 400.0 * 300.0 * 36.0);
  EXPECT_NE(inspect({file_, "--set", "multiplier=9"}).out.find("\n    estimate "),
            std::string::npos);
}

TEST_F(InspectCommand, costOfViews_isNotEstimated) {
  const Arguments view = {"--set", "outputType=Focus Matte"};
  EXPECT_TRUE(inspectPart(rgbazPart(8, 4, 5.0), view)["prediction"]["estimate"].is_null());
  writeDeepFixture(file_, {opaqueDeepPart(8, 4, 150.0)});
  EXPECT_TRUE(inspectJson(with({file_}, view)).at(0)["prediction"]["estimate"].is_null());
}

TEST_F(InspectCommand, costOfADeepRender_isEstimated) {
  writeDeepFixture(file_, {opaqueDeepPart(400, 300, 150.0)});
  const ordered_json prediction = inspectJson({file_, "--set", "multiplier=9"}).at(0)["prediction"];
  EXPECT_EQ(prediction["back"], 9.0);
  const ordered_json& estimate = prediction["estimate"];
  EXPECT_GT(estimate["seconds"].get<double>(), 0.0);
  // Six floats of each sample, and what the node keeps of it and of each pixel.
  EXPECT_GT(estimate["memoryBytes"].get<double>(), 400.0 * 300.0 * (24.0 + 36.0 + 83.0));
  EXPECT_LT(estimate["memoryBytes"].get<double>(), 100e6);
}

TEST_F(InspectCommand, deepPictureWithoutSamples_isNoFaultOfTheEstimate) {
  DeepPartFixture part = opaqueDeepPart(8, 4, 150.0);
  part.samples = [](int, int) { return DeepPixelFixture(); };
  writeDeepFixture(file_, {part});
  EXPECT_TRUE(inspectJson({file_, "--set", "multiplier=9"}).at(0)["prediction"].is_null());
}

TEST_F(InspectCommand, apertureImageAndMattes_countForTheEstimate) {
  const auto bytesWith = [this](const Arguments& more) {
    return inspectPart(
               rgbazPart(200, 150, 200.0),
               with({"--set", "multiplier=9"}, more))["prediction"]["estimate"]["memoryBytes"]
        .get<double>();
  };
  const std::string beside = folder_.file("beside.exr");
  writeExrFixture(beside, rgbazPart(400, 400, 0.0));
  const double plain = bytesWith({});
  const double bytes = 400.0 * 400.0 * 28.0;  // four halves and a float, and floats of the halves
  EXPECT_NEAR(bytesWith({"--kernel", beside, "--set", "kernelType=Input"}), plain + bytes, 1.0);
  EXPECT_NEAR(bytesWith({"--mattes", beside}), plain + bytes, 1.0);
  EXPECT_FALSE(inspectJson({file_, "--mattes", beside}).at(0)["prediction"].is_null());
}

TEST_F(InspectCommand, apertureImageThatIsMissing_isOneLineForAllFiles) {
  writeExrFixture(file_, rgbazPart(8, 4, 5.0));
  for (const char* option : {"--kernel", "--mattes"}) {
    const RunResult result = inspect({file_, file_, option, folder_.file("none.exr")});
    EXPECT_EQ(result.exitCode, 3) << option;
    EXPECT_TRUE(isOneErrorLine(result.error)) << result.error;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(inspect({file_, option, ""}).exitCode, 2) << option;
  }
}

TEST_F(InspectCommand, pictureWhoseWindowsDoNotMeet_isEstimatedWithoutAFault) {
  PartFixture part = rgbazPart(8, 4, 5.0);
  part.data = Imath::Box2i({-900, -700}, {-500, -300});
  EXPECT_FALSE(inspectPart(part, {"--set", "multiplier=9"})["prediction"]["estimate"].is_null());
}

// The estimate is a plain sum: it is to be of the right size, not exact.
void expectMemoryWithinAFactorOfTwo(const std::string& file, const Arguments& settings,
                                    Arguments (*renderOf)(const std::string&, const std::string&,
                                                          const Arguments&)) {
  const ScratchFolder folder;
  const std::string report = folder.file("report.json");
  const ordered_json prediction = inspectJson(with({file}, settings)).at(0)["prediction"];
  const RunResult result =
      runCommand(renderOf(file, folder.file("out.exr"), with({"--report", report}, settings)));
  ASSERT_EQ(result.exitCode, 0) << result.error;
  const double real = ordered_json::parse(bytesOfFile(report))["peakMemoryBytes"];
  const double estimate = prediction["estimate"]["memoryBytes"];
  EXPECT_GT(estimate, real / 2.0) << file;
  EXPECT_LT(estimate, real * 2.0) << file;
}

TEST(RealInspection, memory_isWithinAFactorOfTwo) {
  SKIP_WITHOUT_PICTURES();
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more memory";
  for (const char* name : {"flat/courtyard.exr", "flat/beachball.singlepart.0001.exr"})
    expectMemoryWithinAFactorOfTwo(pictureFolder() + "/" + name, kRenders.front(), renderArguments);
}

TEST(RealInspection, memoryOfDeepRenders_isWithinAFactorOfTwo) {
  SKIP_WITHOUT_PICTURES();
  if (DREVIN_SANITIZED) GTEST_SKIP() << "sanitizers take far more memory";
  const Arguments settings = {"--set",        "multiplier=64", "--set",
                              "focalPlane=5", "--set",         "focusRegionSize=2"};
  for (const char* name : {"deep/forest.Leaves.exr", "deep/fire_and_spikes.volume.exr"})
    expectMemoryWithinAFactorOfTwo(pictureFolder() + "/" + name, settings, deepArguments);
}

TEST(RealInspection, largestKernel_isTheNodesOwn) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  for (const char* name :
       {"flat/courtyard.exr", "flat/beachball.singlepart.0002.exr", "layers/rgbaz.exr"}) {
    const std::string file = pictureFolder() + "/" + name;
    for (const Arguments& render : kRenders) {
      const ordered_json prediction = inspectJson(with({file}, render)).at(0)["prediction"];
      EXPECT_EQ(prediction["largestKernel"],
                largestByWarning(renderArguments(file, folder.file("out.exr"), render)))
          << name << " " << render.at(1);
    }
  }
}

TEST(RealInspection, largestKernelOfDeepPictures_isTheNodesOwn) {
  SKIP_WITHOUT_PICTURES();
  const ScratchFolder folder;
  for (const char* name : {"deep/fire_and_spikes.volume.exr", "deep/discs.42.exr",
                           "deep/glass_balls.motionblur.exr"}) {
    const std::string file = pictureFolder() + "/" + name;
    for (const Arguments& render : kRenders) {
      const ordered_json prediction = inspectJson(with({file}, render)).at(0)["prediction"];
      EXPECT_EQ(prediction["largestKernel"],
                largestByWarning(deepArguments(file, folder.file("out.exr"),
                                               with({"--deep-order", "far-first"}, render))))
          << name << " " << render.at(1);
    }
  }
}

// What the pictures' own description says of them.
TEST(RealInspection, courtyard_isInMetresWithTwoPixelsOfSky) {
  SKIP_WITHOUT_PICTURES();
  const ordered_json depth = inspectJson({pictureFolder() + "/flat/courtyard.exr"}).at(0)["depth"];
  EXPECT_EQ(depth["style"]["guess"], "Real");
  EXPECT_EQ(depth["unit"]["guess"], "m");
  EXPECT_NEAR(depth["near"].get<double>(), 1.13, 0.005);
  EXPECT_NEAR(depth["far"].get<double>(), 43.5, 0.05);
  EXPECT_EQ(depth["background"]["value"], 1e10);
  EXPECT_EQ(depth["background"]["pixels"], 2);
}

TEST(RealInspection, beachballs_haveDepthZeroWithoutAlpha) {
  SKIP_WITHOUT_PICTURES();
  for (const char* frame : {"0001", "0002", "0003", "0004"}) {
    const ordered_json depth =
        inspectJson({pictureFolder() + "/flat/beachball.singlepart." + frame + ".exr"})
            .at(0)["depth"];
    EXPECT_EQ(depth["style"]["guess"], "Real") << frame;
    EXPECT_EQ(depth["background"]["value"], 0.0) << frame;
    EXPECT_GE(depth["near"].get<double>(), 9.0) << frame;
    EXPECT_LT(depth["far"].get<double>(), 10.95) << frame;
    EXPECT_EQ(depth["others"], ordered_json::parse(R"(["left.Z"])")) << frame;
  }
}

TEST(RealInspection, depthOfAnotherViewThanTheColours_isTold) {
  SKIP_WITHOUT_PICTURES();
  const std::string file = pictureFolder() + "/flat/beachball.multipart.0001.exr";
  const ordered_json depth = inspectJson({file}).at(0)["depth"];
  EXPECT_EQ(depth["view"], "left");
  EXPECT_EQ(depth["viewOfColours"], "right");
  EXPECT_EQ(depth["others"], ordered_json::parse(R"(["depth_right.Z"])"));
  EXPECT_NE(inspect({file}).out.find("but the colours are of view right"), std::string::npos);
}

TEST(RealInspection, layers_areRealAsTheirDepthsGrow) {
  SKIP_WITHOUT_PICTURES();
  for (const char* name :
       {"channelTestNukeSinglePart", "channelTestNukePartPerLayer", "channelTestSinglePart",
        "channelTestMultiViewPartPerLayer", "imitateProductionLayers2", "rgbaz"}) {
    const ordered_json depth =
        inspectJson({pictureFolder() + "/layers/" + name + ".exr"}).at(0)["depth"];
    EXPECT_EQ(depth["style"]["guess"], "Real") << name;
    EXPECT_TRUE(depth["background"].is_null()) << name;
  }
}

TEST(RealInspection, deepPictures_haveTheSamplesOfTheirDescription) {
  SKIP_WITHOUT_PICTURES();
  const std::string folder = pictureFolder() + "/deep/";
  const ordered_json files =
      inspectJson({folder + "fire_and_spikes.volume.exr", folder + "discs.42.exr",
                   folder + "tinydeep.exr", folder + "deepalpha.tiled.exr"});
  const ordered_json& fire = files[0]["deep"];
  EXPECT_EQ(fire["samples"]["all"], 191482);
  EXPECT_EQ(fire["samples"]["mostPerPixel"], 227);
  EXPECT_EQ(fire["thick"], 159121);
  EXPECT_NEAR(fire["near"].get<double>(), 2.82, 0.005);
  EXPECT_NEAR(fire["far"].get<double>(), 10.84, 0.005);
  EXPECT_EQ(files[1]["deep"]["samples"]["all"], 67605);
  EXPECT_EQ(files[1]["deep"]["samples"]["mostPerPixel"], 8);
  EXPECT_EQ(files[2]["deep"]["samples"]["all"], 1);
  EXPECT_EQ(files[3]["parts"][0]["type"], "deep tiles");
  EXPECT_EQ(files[3]["deep"]["samples"]["all"], 28846);
}

TEST(RealInspection, cameraOfTheHeader_isTold) {
  SKIP_WITHOUT_PICTURES();
  const ordered_json camera =
      inspectJson({pictureFolder() + "/meta/cornellBox.cryptomatte.0001.exr"}).at(0)["camera"];
  EXPECT_EQ(camera["fStop"]["value"], 8.0);
  EXPECT_EQ(camera["focalLength"]["value"], 35.0);
  EXPECT_EQ(camera["focalPlane"]["value"], 200.0);
  EXPECT_EQ(camera["focalPlane"]["from"], "cameraTargetDistance");
}

// Too little for a camera is not nothing.
TEST(RealInspection, fieldOfViewAlone_isToldWithWhatItLacks) {
  SKIP_WITHOUT_PICTURES();
  const std::string path = pictureFolder() + "/deep/fire_and_spikes.volume.exr";
  const ordered_json file = inspectJson({path}).at(0);
  EXPECT_EQ(file["camera"]["fieldOfView"]["value"], 50.0);
  EXPECT_EQ(file["camera"]["fieldOfView"]["from"], "CameraFov");
  EXPECT_EQ(file["cameraLacks"], (ordered_json{"fStop", "focalPlane", "horizontalAperture"}));
  const RunResult text = inspect({path});
  EXPECT_NE(text.out.find("fieldOfView 50 degrees (CameraFov); --camera header also needs fStop, "
                          "focalPlane, horizontalAperture\n"),
            std::string::npos)
      << text.out;
}

TEST(RealInspection, damagedFiles_areOneLineEach) {
  SKIP_WITHOUT_PICTURES();
  const std::vector<std::string> files = filesIn("damaged");
  const RunResult result = inspect(files);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(linesStarting(result.error, "drevin: error: ").size(), files.size()) << result.error;
  EXPECT_EQ(result.out, "");
}

}  // namespace
}  // namespace drevintool::testing
