#include "terminal/NameList.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace drevintool
