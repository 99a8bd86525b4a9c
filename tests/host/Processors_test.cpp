#include <gtest/gtest.h>
#include <sched.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "CgroupQuota.h"
#include "EmbeddedHost/ProcessorQuota.h"
#include "EmbeddedHost/Render.h"

using embedded::cgroupProcessors;

namespace {

/// A folder that looks like that of a control group, gone at the end.
class GroupFolder {
 public:
  GroupFolder() {
    std::string pattern = ::testing::TempDir() + "hostgroupXXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  ~GroupFolder() { std::filesystem::remove_all(path_); }
  GroupFolder(const GroupFolder&) = delete;
  GroupFolder& operator=(const GroupFolder&) = delete;

  void write(const std::string& name, const std::string& text) const {
    const std::filesystem::path file = path_ + "/" + name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

TEST(CgroupQuota, unified_isQuotaOverPeriodRoundedUp) {
  const GroupFolder folder;
  folder.write("cpu.max", "200000 100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), 2U);
  folder.write("cpu.max", "150000 100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), 2U);
  folder.write("cpu.max", "1000 100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), 1U);
}

TEST(CgroupQuota, unifiedMax_isNone) {
  const GroupFolder folder;
  folder.write("cpu.max", "max 100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), std::nullopt);
}

TEST(CgroupQuota, legacy_readsBothFiles) {
  const GroupFolder folder;
  folder.write("cpu.cfs_quota_us", "300000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), std::nullopt) << "no period";
  folder.write("cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), 3U);
}

TEST(CgroupQuota, legacyMinusOne_isNone) {
  const GroupFolder folder;
  folder.write("cpu.cfs_quota_us", "-1\n");
  folder.write("cpu.cfs_period_us", "100000\n");
  EXPECT_EQ(cgroupProcessors(folder.path()), std::nullopt);
}

TEST(CgroupQuota, nonsenseOrNoFolder_isNone) {
  const GroupFolder folder;
  EXPECT_EQ(cgroupProcessors(folder.path()), std::nullopt);
  EXPECT_EQ(cgroupProcessors(folder.path() + "/nothing"), std::nullopt);
  for (const char* text : {"", "words words", "100000", "100000 0", "0 100000", "nan 100000"}) {
    folder.write("cpu.max", text);
    EXPECT_EQ(cgroupProcessors(folder.path()), std::nullopt) << text;
  }
  folder.write("cpu.max", "1e300 1");
  EXPECT_GE(cgroupProcessors(folder.path()).value_or(0), 1000000U);
}

TEST(ProcessorQuota, noGroups_haveNone) {
  const GroupFolder folder;
  EXPECT_EQ(embedded::quotaProcessors({folder.path() + "/cgroup", folder.path()}), std::nullopt);
}

TEST(ProcessorQuota, leastOfTheGroupsAbove_counts) {
  const GroupFolder folder;
  folder.write("cgroup", "0::/slurm/job_7\n");
  folder.write("fs/slurm/job_7/cpu.max", "max 100000\n");
  folder.write("fs/slurm/cpu.max", "250000 100000\n");
  folder.write("fs/cpu.max", "800000 100000\n");
  EXPECT_EQ(embedded::quotaProcessors({folder.path() + "/cgroup", folder.path() + "/fs"}), 3U);
}

TEST(Processors, usable_areAtLeastOneAndAtMostTheAffinitys) {
  cpu_set_t set;
  ASSERT_EQ(sched_getaffinity(0, sizeof(set), &set), 0);
  EXPECT_GE(embedded::usableProcessors(), 1U);
  EXPECT_LE(embedded::usableProcessors(), static_cast<unsigned>(CPU_COUNT(&set)));
}

TEST(Processors, affinityOfOne_leavesOne) {
  unsigned usable = 0;
  std::thread([&] {
    cpu_set_t set;
    sched_getaffinity(0, sizeof(set), &set);
    int first = 0;
    while (!CPU_ISSET(first, &set))
      ++first;
    CPU_ZERO(&set);
    CPU_SET(first, &set);
    sched_setaffinity(0, sizeof(set), &set);  // of this thread only
    usable = embedded::usableProcessors();
  }).join();
  EXPECT_EQ(usable, 1U);
}
