#include "arguments/Arguments.h"

#include <gtest/gtest.h>

#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

Arguments parse(std::vector<const char*> texts) {
  texts.insert(texts.begin(), "drevin");
  return parseArguments(static_cast<int>(texts.size()), texts.data());
}

RenderArguments parseRender(std::vector<const char*> more) {
  std::vector<const char*> texts = {"render", "--input", "in.exr", "--output", "out.exr"};
  texts.insert(texts.end(), more.begin(), more.end());
  return std::get<RenderArguments>(parse(texts));
}

std::string failureOf(const std::vector<const char*>& texts) {
  try {
    parse(texts);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::Usage);
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    return error.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

std::string renderFailure(std::vector<const char*> more) {
  std::vector<const char*> texts = {"render", "--input", "in.exr", "--output", "out.exr"};
  texts.insert(texts.end(), more.begin(), more.end());
  return failureOf(texts);
}

TEST(Arguments, settings_keepTheirOrder) {
  const RenderArguments arguments =
      parseRender({"--set", "a=1", "--quiet", "--set=b=x=y", "--set", "filmFormat=Vista Vision"});
  EXPECT_EQ(arguments.settings,
            (std::vector<std::string>{"a=1", "b=x=y", "filmFormat=Vista Vision"}));
  EXPECT_TRUE(arguments.quiet);
}

TEST(Arguments, valuesThatBeginWithAMinus_areValues) {
  const RenderArguments arguments = parseRender({"--region", "-5,-6,7,8", "--set", "kChrAbb=-3"});
  ASSERT_TRUE(arguments.region);
  EXPECT_EQ(arguments.region->x, -5);
  EXPECT_EQ(arguments.region->t, 8);
}

TEST(Arguments, defaults) {
  const RenderArguments arguments = parseRender({});
  EXPECT_EQ(arguments.threads, 0U);
  EXPECT_EQ(arguments.proxy, 1.0);
  EXPECT_FALSE(arguments.region);
  EXPECT_TRUE(arguments.channels.empty());
}

TEST(Arguments, channels_areSplit) {
  EXPECT_EQ(parseRender({"--channels", "R, depth.Z"}).channels,
            (std::vector<std::string>{"R", "depth.Z"}));
}

TEST(Arguments, regionThatIsNone_isRefused) {
  for (const char* text :
       {"1,2,3", "1,2,3,4,5", "a,0,1,1", "0,0,0,5", "0,5,5,5", "1.5,0,3,3", ""}) {
    EXPECT_NE(renderFailure({"--region", text}).find("--region"), std::string::npos) << text;
  }
}

TEST(Arguments, threadsAndProxyThatAreNone_areRefused) {
  for (const char* text : {"0", "-1", "two", "1.5", "999999999999"}) {
    EXPECT_NE(renderFailure({"--threads", text}).find("--threads"), std::string::npos) << text;
  }
  for (const char* text : {"0", "-1", "nan", "1e999"}) {
    EXPECT_NE(renderFailure({"--proxy", text}).find("--proxy"), std::string::npos) << text;
  }
}

TEST(Arguments, missingInputOrOutput_isNamed) {
  EXPECT_NE(failureOf({"render", "--output", "o.exr"}).find("--input"), std::string::npos);
  EXPECT_NE(failureOf({"render", "--input", "i.exr"}).find("--output"), std::string::npos);
}

TEST(Arguments, otherExtensions_areRefused) {
  EXPECT_NE(failureOf({"render", "--input", "i.exr", "--output", "o.jpg"}).find(".exr or .png"),
            std::string::npos);
}

TEST(Arguments, upperCaseExtension_isTaken) {
  const Arguments arguments = parse({"render", "--input", "i.exr", "--output", "o.PNG"});
  EXPECT_EQ(std::get<RenderArguments>(arguments).output, "o.PNG");
}

TEST(Arguments, deepPicture_needsNoFlatOne) {
  const Arguments arguments = parse({"render", "--deep", "d.exr", "--output", "o.exr"});
  const RenderArguments& render = std::get<RenderArguments>(arguments);
  EXPECT_EQ(render.deep, "d.exr");
  EXPECT_EQ(render.input, "");
  EXPECT_EQ(render.deepOrder, embedded::DeepOrder::NearFirst);
}

TEST(Arguments, deepOptions_areTaken) {
  const RenderArguments render = parseRender({"--deep", "d.exr", "--deep-part", "rgba.left",
                                              "--view", "left", "--deep-order", "far-first"});
  EXPECT_EQ(render.deepPart, "rgba.left");
  EXPECT_EQ(render.view, "left");
  EXPECT_EQ(render.deepOrder, embedded::DeepOrder::FarFirst);
  EXPECT_EQ(parseRender({"--deep", "d.exr", "--deep-order", "near-first"}).deepOrder,
            embedded::DeepOrder::NearFirst);
}

TEST(Arguments, deepOptionsWithoutADeepPicture_areRefused) {
  for (const char* option : {"--deep-part", "--view", "--deep-order"}) {
    const std::string line = renderFailure({option, "near-first"});
    EXPECT_NE(line.find(option), std::string::npos) << line;
    EXPECT_NE(line.find("--deep"), std::string::npos) << line;
  }
}

TEST(Arguments, deepOrderThatIsNone_namesTheChoices) {
  for (const char* text : {"nearfirst", "Near-First", "0"}) {
    const std::string line = renderFailure({"--deep", "d.exr", "--deep-order", text});
    EXPECT_NE(line.find("near-first or far-first"), std::string::npos) << line;
  }
}

TEST(Arguments, sequenceOptions_areTaken) {
  const RenderArguments render =
      parseRender({"--frames", "-2-0", "--views", "left, right", "--skip-existing",
                   "--skip-bad-frames", "--frames-in-flight", "3"});
  EXPECT_EQ(render.frames, (std::vector<int>{-2, -1, 0}));
  EXPECT_EQ(render.views, (std::vector<std::string>{"left", "right"}));
  EXPECT_TRUE(render.skipExisting);
  EXPECT_TRUE(render.skipBadFrames);
  EXPECT_EQ(render.framesInFlight, 3U);
}

TEST(Arguments, withoutFrames_thereIsNoSequence) {
  const RenderArguments render = parseRender({});
  EXPECT_TRUE(render.frames.empty());
  EXPECT_TRUE(render.views.empty());
  EXPECT_EQ(render.framesInFlight, 0U);
}

TEST(Arguments, framesInFlightThatAreNone_areRefused) {
  for (const char* text : {"0", "-1", "65", "many"}) {
    const std::string line = renderFailure({"--frames", "1", "--frames-in-flight", text});
    EXPECT_NE(line.find("from 1 to 64"), std::string::npos) << line;
  }
}

TEST(Arguments, scriptOptions_areTakenByEverySubcommandOfTheNode) {
  EXPECT_EQ(parseRender({"--script", "a.nk", "--node", "N"}).scriptNode, "N");
  EXPECT_EQ(std::get<ControlsArguments>(parse({"controls", "--script", "a.nk"})).script, "a.nk");
  const Arguments arguments = parse({"script", "--script", "-", "--name", "Lens_1"});
  EXPECT_EQ(std::get<ScriptArguments>(arguments).script, "-");
  EXPECT_EQ(std::get<ScriptArguments>(arguments).name, "Lens_1");
  EXPECT_EQ(std::get<ScriptArguments>(parse({"script"})).name, "");
}

TEST(Arguments, namesThatTheHostDoesNotTake_areRefused) {
  for (const char* name : {"", "1a", "a b", "a.b", "a{"})
    EXPECT_NE(failureOf({"script", "--name", name}).find("--name"), std::string::npos) << name;
}

TEST(Arguments, emptyNames_areRefused) {
  EXPECT_NE(failureOf({"render", "--deep", "", "--output", "o.exr"}).find("--deep"),
            std::string::npos);
  EXPECT_NE(
      failureOf({"render", "--deep", "d.exr", "--input", "", "--output", "o.exr"}).find("--input"),
      std::string::npos);
  for (const char* option : {"--deep-part", "--view", "--deep-order"}) {
    EXPECT_NE(renderFailure({"--deep", "d.exr", option, ""}).find(option), std::string::npos);
  }
}

TEST(Arguments, unknownOption_namesTheNearest) {
  EXPECT_NE(renderFailure({"--regoin", "1,2,3,4"}).find("--region"), std::string::npos);
}

TEST(Arguments, unknownSubcommand_namesTheNearest) {
  EXPECT_NE(failureOf({"rendre"}).find("render"), std::string::npos);
  EXPECT_NE(failureOf({}).find("--help"), std::string::npos);
}

// "--input" is nearer to "inspect" than to most, but no word.
TEST(Arguments, optionsWithoutASubcommand_arePointedToTheHelp) {
  for (const std::vector<const char*>& arguments :
       {std::vector<const char*>{"--input", "a.exr"}, {"--inspect"}, {"-"}}) {
    const std::string line = failureOf(arguments);
    EXPECT_NE(line.find("; see drevin --help"), std::string::npos) << line;
  }
  EXPECT_NE(failureOf({"--versoin"}).find("did you mean --version?"), std::string::npos);
}

TEST(Arguments, optionGivenTwice_isRefused) {
  EXPECT_NE(renderFailure({"--input", "other.exr"}).find("--input"), std::string::npos);
}

TEST(Arguments, helpAndVersion_areTexts) {
  EXPECT_EQ(std::get<TextRequest>(parse({"--version"})).text, "drevin 1.4.6\n");
  EXPECT_NE(std::get<TextRequest>(parse({"--help"})).text.find("render"), std::string::npos);
  for (const char* command : {"render", "controls", "demo"}) {
    const std::string text = std::get<TextRequest>(parse({command, "--help"})).text;
    EXPECT_NE(text.find("Usage"), std::string::npos) << command;
  }
  EXPECT_NE(std::get<TextRequest>(parse({"render", "--help"})).text.find("--region"),
            std::string::npos);
}

TEST(Arguments, controlsAndDemo_areTheirOwn) {
  EXPECT_TRUE(std::get<ControlsArguments>(parse({"controls", "--json"})).json);
  EXPECT_EQ(std::get<DemoArguments>(parse({"demo", "there"})).directory, "there");
}

}  // namespace
}  // namespace drevintool
