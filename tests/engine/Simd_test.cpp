#include "engine/Simd.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "engine/SimdLevels.h"

namespace drevin::test {
namespace {

TEST(Simd, levels_haveTheNamesOfTheEnvironmentVariable) {
  EXPECT_EQ(simdLevelName(dvSimdLevel::Baseline), "baseline");
  EXPECT_EQ(simdLevelName(dvSimdLevel::Avx2), "avx2");
  EXPECT_EQ(simdLevelName(dvSimdLevel::Avx512), "avx512");
}

TEST(Simd, levels_ascend) {
  EXPECT_LT(dvSimdLevel::Baseline, dvSimdLevel::Avx2);
  EXPECT_LT(dvSimdLevel::Avx2, dvSimdLevel::Avx512);
}

TEST(Simd, usableLevel_isUsedWhenSet) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_EQ(simdLevel(), level);
  }
}

TEST(Simd, levelAboveTheProcessors_isLimited) {
  const SimdLevelInUse use(dvSimdLevel::Avx512);
  EXPECT_EQ(simdLevel(), supportedSimdLevel());
}

/// Exit code: the level that a fresh process chooses where DREVIN_SIMD is `name`.
void exitWithLevelNamed(const char* name) {
  setenv("DREVIN_SIMD", name, 1);
  std::exit(static_cast<int>(simdLevel()));
}

TEST(Simd, environmentVariable_forcesALevel) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const dvSimdLevel level : usableLevels()) {
    EXPECT_EXIT(exitWithLevelNamed(simdLevelName(level).c_str()),
                testing::ExitedWithCode(static_cast<int>(level)), "");
  }
}

TEST(Simd, unknownNameInTheEnvironment_meansTheBest) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(exitWithLevelNamed("sse9"),
              testing::ExitedWithCode(static_cast<int>(supportedSimdLevel())), "");
}

TEST(Simd, baseline_isAlwaysThere) {
  EXPECT_GE(supportedSimdLevel(), dvSimdLevel::Baseline);
  EXPECT_EQ(usableLevels().front(), dvSimdLevel::Baseline);
}

}  // namespace
}  // namespace drevin::test
