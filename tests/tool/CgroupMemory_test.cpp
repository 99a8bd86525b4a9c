#include "picture/CgroupMemory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ScratchFolder.h"

namespace drevintool::testing {
namespace {

namespace fs = std::filesystem;

class CgroupMemory : public ::testing::Test {
 protected:
  void write(const std::string& file, const std::string& text) {
    const fs::path path = fs::path(folder_.path()) / file;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text << "\n";
  }
  std::optional<std::uint64_t> left() const {
    return cgroupMemoryLeft({folder_.file("cgroup"), folder_.file("fs")});
  }

  ScratchFolder folder_;
};

TEST_F(CgroupMemory, nothingToRead_isNoLimit) {
  EXPECT_EQ(left(), std::nullopt);
}

TEST_F(CgroupMemory, maxEverywhere_isNoLimit) {
  write("cgroup", "0::/job");
  write("fs/memory.max", "max");
  write("fs/job/memory.max", "max");
  write("fs/job/memory.current", "5000");
  EXPECT_EQ(left(), std::nullopt);
}

TEST_F(CgroupMemory, limitOfTheRoot_isLessWhatIsUsed) {
  write("fs/memory.max", "9000");
  write("fs/memory.current", "2000");
  EXPECT_EQ(left(), 7000U);
}

TEST_F(CgroupMemory, limitOfTheOwnGroup_isFoundSomeFoldersDown) {
  write("cgroup", "0::/slurm/job_7/step_0");
  write("fs/slurm/job_7/step_0/memory.max", "6000");
  write("fs/slurm/job_7/step_0/memory.current", "1000");
  EXPECT_EQ(left(), 5000U);
}

TEST_F(CgroupMemory, groupsAbove_countToo) {
  write("cgroup", "0::/slurm/job_7/step_0");
  write("fs/slurm/job_7/step_0/memory.max", "6000");
  write("fs/slurm/job_7/memory.max", "5500");
  write("fs/slurm/job_7/memory.current", "5000");
  EXPECT_EQ(left(), 500U);
}

TEST_F(CgroupMemory, moreUsedThanAllowed_leavesNothing) {
  write("fs/memory.max", "1000");
  write("fs/memory.current", "2000");
  EXPECT_EQ(left(), 0U);
}

TEST_F(CgroupMemory, versionOne_isFoundByItsController) {
  write("cgroup", "3:cpu,cpuacct:/other\n4:memory:/job\n");
  write("fs/memory/job/memory.limit_in_bytes", "8000");
  write("fs/memory/job/memory.usage_in_bytes", "3000");
  write("fs/memory/memory.limit_in_bytes", "9223372036854771712");
  EXPECT_EQ(left(), 5000U);
}

TEST_F(CgroupMemory, linesThatAreNone_arePassedOver) {
  write("cgroup", "nonsense\n:\n::\n0::/job");
  write("fs/job/memory.max", "4000");
  EXPECT_EQ(left(), 4000U);
}

}  // namespace
}  // namespace drevintool::testing
