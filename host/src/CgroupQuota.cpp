#include "CgroupQuota.h"

#include <algorithm>
#include <cmath>
#include <fstream>

namespace embedded {

namespace {

std::optional<unsigned> processorsOf(double quota, double period) {
  if (!(quota > 0.0) || !(period > 0.0)) return std::nullopt;
  return static_cast<unsigned>(std::min(std::ceil(quota / period), 1e6));
}

/// Version 2: one file "quota period", the quota "max" where there is none.
std::optional<unsigned> unifiedQuota(const std::string& root) {
  std::ifstream file(root + "/cpu.max");
  double quota = 0.0;
  double period = 0.0;
  if (!(file >> quota >> period)) return std::nullopt;
  return processorsOf(quota, period);
}

/// Version 1: two files, the quota -1 where there is none.
std::optional<unsigned> legacyQuota(const std::string& root) {
  std::ifstream quotaFile(root + "/cpu.cfs_quota_us");
  std::ifstream periodFile(root + "/cpu.cfs_period_us");
  double quota = 0.0;
  double period = 0.0;
  if (!(quotaFile >> quota) || !(periodFile >> period)) return std::nullopt;
  return processorsOf(quota, period);
}

}  // namespace

std::optional<unsigned> cgroupProcessors(const std::string& root) {
  const std::optional<unsigned> unified = unifiedQuota(root);
  return unified ? unified : legacyQuota(root);
}

}  // namespace embedded
