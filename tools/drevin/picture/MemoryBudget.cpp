#include "picture/MemoryBudget.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <string>

#include "picture/CgroupMemory.h"

namespace drevintool {
namespace {

std::optional<std::uint64_t> availableMemory() {
  std::ifstream file("/proc/meminfo");
  std::string key;
  std::uint64_t kibibytes = 0;
  std::string unit;
  while (file >> key >> kibibytes) {
    if (key == "MemAvailable:") return kibibytes * 1024;
    std::getline(file, unit);
  }
  return std::nullopt;
}

/// What this process has, in bytes; 0 where the system does not tell.
struct ProcessMemory {
  std::uint64_t addressSpace = 0;
  std::uint64_t resident = 0;
};

ProcessMemory processMemory() {
  std::ifstream file("/proc/self/statm");
  std::uint64_t size = 0;
  std::uint64_t resident = 0;
  if (!(file >> size >> resident)) return {};
  const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  return {size * pageSize, resident * pageSize};
}

std::uint64_t leftOf(std::uint64_t limit, std::uint64_t used) {
  return used >= limit ? 0 : limit - used;
}

std::optional<std::uint64_t> addressSpaceLeft() {
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return std::nullopt;
  return leftOf(limit.rlim_cur, processMemory().addressSpace);
}

std::atomic<std::uint64_t> setLimit{0};

}  // namespace

MemoryLimits memoryLimits() {
  return {availableMemory(), cgroupMemoryLeft(), addressSpaceLeft()};
}

void limitMemory(std::uint64_t bytes) {
  setLimit = bytes;
}

std::uint64_t memoryBudget() {
  if (const std::uint64_t limit = setLimit) return leftOf(limit, processMemory().resident);
  constexpr std::uint64_t kLeast = std::uint64_t{64} << 20;
  constexpr std::uint64_t kMost = std::uint64_t{1} << 40;
  const MemoryLimits limits = memoryLimits();
  const std::uint64_t free = std::min({limits.free.value_or(kMost), limits.cgroup.value_or(kMost),
                                       limits.addressSpace.value_or(kMost), kMost});
  return std::max(kLeast, free / 4 * 3);
}

std::uint64_t peakMemoryBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace drevintool
