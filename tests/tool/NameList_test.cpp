#include "terminal/NameList.h"

#include <gtest/gtest.h>

#include "terminal/OneLine.h"

namespace drevintool {
namespace {

TEST(NameList, fewNames_areAllThere) {
  EXPECT_EQ(nameList({}), "");
  EXPECT_EQ(nameList({"a"}), "a");
  EXPECT_EQ(nameList({"a", "b", "c"}), "a, b, c");
  EXPECT_EQ(nameList(std::vector<std::string>(20, "n")).find("more"), std::string::npos);
}

TEST(NameList, manyNames_endInTheirNumber) {
  const std::string list = nameList(std::vector<std::string>(5000000, "n"));
  EXPECT_EQ(list.substr(0, 7), "n, n, n");
  EXPECT_EQ(list.substr(list.rfind(", ")), ", n and 4999980 more");
  EXPECT_LT(list.size(), 100U);
}

TEST(ShortName, longNames_areCut) {
  EXPECT_EQ(shortName(std::string(60, 'x')), std::string(60, 'x'));
  EXPECT_EQ(shortName(std::string(61, 'x')), std::string(60, 'x') + "...");
}

TEST(NameList, columnName_keepsTheBeginningAndTheEnd) {
  EXPECT_EQ(columnName("layer.red", 9), "layer.red");
  EXPECT_EQ(columnName("layer.colour.red", 10), "laye...red");
  EXPECT_EQ(columnName("", 8), "");
}

TEST(NameList, charactersOfSeveralBytes_stayWhole) {
  std::string name;
  for (int i = 0; i < 40; ++i)
    name += "\xc3\xa9";
  EXPECT_EQ(characters(name), 40U);
  EXPECT_EQ(characters(columnName(name, 12)), 12U);
  EXPECT_EQ(oneLine(columnName(name, 12)), columnName(name, 12));
  EXPECT_EQ(oneLine(shortName("a" + name)), shortName("a" + name));
}

}  // namespace
}  // namespace drevintool
