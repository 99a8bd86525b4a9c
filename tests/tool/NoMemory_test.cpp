#include "terminal/NoMemory.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(NoMemory, linesOfTheCommandAndOfTheHost_areKnown) {
  EXPECT_TRUE(saysNoMemory("not enough memory"));
  EXPECT_TRUE(saysNoMemory("a.exr: not enough memory to write it"));
  EXPECT_TRUE(saysNoMemory("out of memory"));
  EXPECT_TRUE(saysNoMemory("a.exr: needs 9 GiB of memory, more than the 1 GiB that it may take"));
}

TEST(NoMemory, otherLines_areNot) {
  EXPECT_FALSE(saysNoMemory(""));
  EXPECT_FALSE(saysNoMemory("memory.exr: no such file"));
}

}  // namespace
}  // namespace drevintool
