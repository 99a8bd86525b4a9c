#include "terminal/SizeText.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

constexpr std::uint64_t kGibibyte = std::uint64_t{1} << 30;

TEST(ParseSize, numbersWithUnits_areBytes) {
  EXPECT_EQ(parseSize("1K"), 1024U);
  EXPECT_EQ(parseSize("512M"), kGibibyte / 2);
  EXPECT_EQ(parseSize("8G"), 8 * kGibibyte);
  EXPECT_EQ(parseSize("1.5G"), kGibibyte + kGibibyte / 2);
  EXPECT_EQ(parseSize("2T"), 2048 * kGibibyte);
}

TEST(ParseSize, spellingsOfAUnit_areTheSame) {
  for (const char* text : {"3G", "3g", "3GB", "3GiB"})
    EXPECT_EQ(parseSize(text), 3 * kGibibyte) << text;
}

TEST(ParseSize, anythingElse_isNothing) {
  for (const char* text : {"", "8", "G", "-1G", "0G", "8 G", "8X", "8GG", "1.2.3G", "8Gb", "nanG",
                           "1e3G", "99999999T", "0.0000001K"})
    EXPECT_FALSE(parseSize(text)) << text;
}

TEST(SizeText, amounts_areWrittenWithTheLargestUnit) {
  EXPECT_EQ(sizeText(0), "0 B");
  EXPECT_EQ(sizeText(1023), "1023 B");
  EXPECT_EQ(sizeText(1024), "1.0 KiB");
  EXPECT_EQ(sizeText(std::uint64_t{3} << 29), "1.5 GiB");
  EXPECT_EQ(sizeText(std::uint64_t{5000} << 40), "5000.0 TiB");
}

}  // namespace
}  // namespace drevintool
