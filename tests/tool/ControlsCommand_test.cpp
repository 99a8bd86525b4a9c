#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "CommandRun.h"

namespace drevintool::testing {
namespace {

using nlohmann::ordered_json;

class ControlsCommand : public ::testing::Test {
 protected:
  static ordered_json listed() {
    const RunResult result = runCommand({"controls", "--json", "--plugin", builtPlugin()});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return ordered_json::parse(result.out);
  }

  const ordered_json controls_ = listed();
};

TEST_F(ControlsCommand, json_has48EntriesInOrderWithAllKeys) {
  const std::vector<std::string> keys = {"index", "tab",     "name",    "label",
                                         "kind",  "range",   "flags",   "default",
                                         "value", "enabled", "choices", "tooltip"};
  ASSERT_EQ(controls_.size(), 48U);
  for (std::size_t i = 0; i < controls_.size(); ++i) {
    EXPECT_EQ(controls_[i]["index"], i + 1);
    std::vector<std::string> found;
    for (const auto& entry : controls_[i].items())
      found.push_back(entry.key());
    EXPECT_EQ(found, keys);
  }
}

TEST_F(ControlsCommand, tabs_groupTheControls) {
  std::vector<std::string> tabs;
  for (const ordered_json& control : controls_) {
    if (control["kind"] == "Tab_knob") tabs.push_back(control["label"]);
    EXPECT_EQ(control["tab"], tabs.back());
  }
  EXPECT_EQ(tabs, (std::vector<std::string>{"Drevin", "Lens", "Optical Artifacts", "Kernel",
                                            "Corrective Slices"}));
}

TEST_F(ControlsCommand, tabsAndText_haveNoName) {
  std::set<std::string> names;
  for (const ordered_json& control : controls_) {
    const bool plain = control["kind"] == "Tab_knob" || control["kind"] == "Text_knob";
    EXPECT_EQ(control["name"].is_null(), plain) << control;
    if (!plain) names.insert(control["name"]);
  }
  EXPECT_EQ(names.size(), 42U);
  EXPECT_EQ(controls_[1]["label"], "Version");
  EXPECT_EQ(controls_[1]["value"], "1.4.6");
}

TEST_F(ControlsCommand, kindRangeFlagsDefaultAndTooltip_areTheControls) {
  const ordered_json& aberration = controls_[30];
  EXPECT_EQ(aberration["name"], "kSphAbb");
  EXPECT_EQ(aberration["kind"], "Float_knob");
  EXPECT_EQ(aberration["range"], (ordered_json{-1, 1}));
  EXPECT_EQ(aberration["flags"], ordered_json::array({"FORCE_RANGE"}));
  EXPECT_EQ(aberration["default"], 0);
  EXPECT_EQ(aberration["tooltip"], "The amount of spherical aberration present on the lens.");
  EXPECT_EQ(controls_[14]["flags"], ordered_json::array({"STARTLINE"}));
  EXPECT_TRUE(controls_[19]["range"].is_null()) << "the aperture number has no range";
  EXPECT_TRUE(controls_[18]["choices"].is_null());
  EXPECT_EQ(controls_[42]["default"], 0.1) << "single precision comes out short";
  EXPECT_EQ(controls_[32]["default"], (ordered_json{0.6, 1, 1}));
}

TEST_F(ControlsCommand, choices_areTheLabels) {
  EXPECT_EQ(controls_[5]["name"], "focusOutput");
  EXPECT_EQ(controls_[5]["choices"], (ordered_json{"Both", "Front", "Back"}));
  EXPECT_EQ(controls_[5]["value"], "Both");
}

TEST_F(ControlsCommand, freshNode_greysWhatItsRulesSay) {
  std::set<std::string> greyed;
  for (const ordered_json& control : controls_) {
    if (!control["enabled"]) greyed.insert(control["name"]);
  }
  EXPECT_EQ(greyed,
            (std::set<std::string>{"apertureWidth", "apertureHeight", "depthSlicesNearAndFar"}));
}

TEST_F(ControlsCommand, defaultStays_whenTheValueChanges) {
  const RunResult result =
      runCommand({"controls", "--json", "--plugin", builtPlugin(), "--set", "focalPlane=7"});
  const ordered_json control = ordered_json::parse(result.out)[10];
  EXPECT_EQ(control["default"], 100);
  EXPECT_EQ(control["value"], 7);
}

TEST_F(ControlsCommand, table_namesEachControlWithin100Columns) {
  const RunResult result =
      runCommand({"controls", "--plugin", builtPlugin(), "--set", "fStop=1.4"});
  ASSERT_EQ(result.exitCode, 0) << result.error;
  std::istringstream stream(result.out);
  for (std::string line; std::getline(stream, line);)
    EXPECT_LE(line.size(), 100U) << line;
  for (const ordered_json& control : controls_) {
    const std::string name = control["name"].is_null() ? control["label"] : control["name"];
    EXPECT_NE(result.out.find(name), std::string::npos) << name;
  }
  EXPECT_EQ(linesStarting(result.out, "  fStop").size(), 1U);
  EXPECT_NE(linesStarting(result.out, "  fStop")[0].find("default 6"), std::string::npos);
}

}  // namespace
}  // namespace drevintool::testing
