#include "sheet/SheetPlan.h"

#include <gtest/gtest.h>

#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

SheetPlan planOf(std::vector<std::string> vary, std::optional<int> columns = std::nullopt) {
  SheetArguments arguments;
  arguments.vary = std::move(vary);
  arguments.columns = columns;
  return SheetPlan(arguments);
}

std::string failureOf(const std::vector<std::string>& vary) {
  try {
    planOf(vary);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::Usage);
    return error.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

std::string numbersTo(int last) {
  std::string list = "0";
  for (int number = 1; number <= last; ++number)
    list += "," + std::to_string(number);
  return list;
}

TEST(SheetPlan, values_areSplitAtCommas) {
  const VariedControl varied = parseVaried("depthStyle=Real,1/z");
  EXPECT_EQ(varied.name, "depthStyle");
  EXPECT_EQ(varied.values, (std::vector<std::string>{"Real", "1/z"}));
}

TEST(SheetPlan, semicolon_leavesCommasInValues) {
  EXPECT_EQ(parseVaried("kChrAbbOff=1,1,1;0.5,1,1").values,
            (std::vector<std::string>{"1,1,1", "0.5,1,1"}));
}

TEST(SheetPlan, blanksOfALabel_areKept) {
  EXPECT_EQ(parseVaried("filmFormat=Vista Vision,16mm").values.front(), "Vista Vision");
}

TEST(SheetPlan, emptyValue_isAValueThatTheControlRefuses) {
  EXPECT_EQ(parseVaried("focalPlane=2,,4").values, (std::vector<std::string>{"2", "", "4"}));
}

TEST(SheetPlan, textWithoutNameOrValues_isRefused) {
  for (const char* text : {"", "focalPlane", "focalPlane=", "=2,3"})
    EXPECT_NE(failureOf({text}).find("NAME=VALUE"), std::string::npos) << text;
}

TEST(SheetPlan, keys_areRefused) {
  EXPECT_NE(failureOf({"focalPlane@3=1,2"}).find("--frames"), std::string::npos);
}

TEST(SheetPlan, oneControl_wrapsIntoANearlySquareGrid) {
  const std::vector<std::vector<int>> grids = {{1, 1, 1}, {2, 2, 1}, {3, 2, 2}, {4, 2, 2},
                                               {5, 3, 2}, {9, 3, 3}, {10, 4, 3}};
  for (const std::vector<int>& grid : grids) {
    const SheetPlan plan = planOf({"a=" + numbersTo(grid[0] - 1)});
    EXPECT_EQ(plan.gridColumns(), grid[1]) << grid[0];
    EXPECT_EQ(plan.gridRows(), grid[2]) << grid[0];
  }
}

TEST(SheetPlan, columns_areTakenUpToTheNumberOfPictures) {
  EXPECT_EQ(planOf({"a=1,2,3,4,5"}, 4).gridColumns(), 4);
  EXPECT_EQ(planOf({"a=1,2,3,4,5"}, 4).gridRows(), 2);
  EXPECT_EQ(planOf({"a=1,2,3"}, 100).gridColumns(), 3);
}

TEST(SheetPlan, twoControls_areColumnsAndRows) {
  const SheetPlan plan = planOf({"a=1,2,3", "b=x,y"});
  EXPECT_EQ(plan.pictures(), 6U);
  EXPECT_EQ(plan.gridColumns(), 3);
  EXPECT_EQ(plan.gridRows(), 2);
  EXPECT_EQ(plan.nameOf(0), "a=1, b=x");
  EXPECT_EQ(plan.nameOf(2), "a=3, b=x");
  EXPECT_EQ(plan.nameOf(3), "a=1, b=y");
  EXPECT_EQ(plan.settingsOf(4)[1].text, "--vary b=y");
}

TEST(SheetPlan, threeControlsAndOneTwice_areRefused) {
  EXPECT_NE(failureOf({"a=1,2", "b=1,2", "c=1,2"}).find("--vary c=1,2"), std::string::npos);
  EXPECT_NE(failureOf({"a=1,2", "a=3"}).find("varied twice"), std::string::npos);
}

TEST(SheetPlan, moreThanAThousandPictures_areRefused) {
  EXPECT_EQ(planOf({"a=" + numbersTo(999)}).pictures(), 1000U);
  const std::string line = failureOf({"a=" + numbersTo(1000)});
  EXPECT_NE(line.find("1001 pictures"), std::string::npos) << line;
  EXPECT_LT(line.size(), 100U) << "the list itself is not repeated";
  EXPECT_NE(failureOf({"a=" + numbersTo(99), "b=" + numbersTo(10)}).find("1100"),
            std::string::npos);
}

}  // namespace
}  // namespace drevintool
