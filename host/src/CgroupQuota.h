#pragma once

/// The processor quota of a control group.

#include <optional>
#include <string>

namespace embedded {

/// Processors that the quota below `root` allows (cpu.max, or cpu.cfs_quota_us and
/// cpu.cfs_period_us), rounded up; nothing where there is no quota.
std::optional<unsigned> cgroupProcessors(const std::string& root);

}  // namespace embedded
