#include "picture/MemoryBudget.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <string>

#include "picture/CgroupMemory.h"
#include "terminal/SizeText.h"

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

MemoryLimit setLimit;

constexpr std::uint64_t kMost = std::uint64_t{1} << 40;

// Bytes that are left, and by what.
struct Left {
  std::uint64_t bytes;
  const char* of;
};

Left leastLeft() {
  const MemoryLimits limits = memoryLimits();
  const std::array<Left, 4> all = {
      {{limits.free.value_or(kMost), "what is free"},
       {limits.cgroup.value_or(kMost), "what its control group leaves"},
       {limits.addressSpace.value_or(kMost), "what its address space limit leaves"},
       {kMost, "1 TiB"}}};
  return *std::min_element(all.begin(), all.end(),
                           [](const Left& a, const Left& b) { return a.bytes < b.bytes; });
}

}  // namespace

MemoryLimits memoryLimits() {
  return {availableMemory(), cgroupMemoryLeft(), addressSpaceLeft()};
}

void limitMemory(const MemoryLimit& limit) {
  setLimit = limit;
}

MemoryBudget memoryBudget() {
  if (setLimit.bytes > 0) {
    const std::uint64_t used = processMemory().resident;
    return {leftOf(setLimit.bytes, used), "--max-memory " + setLimit.text, "give it more", used};
  }
  constexpr std::uint64_t kLeast = std::uint64_t{64} << 20;
  const Left left = leastLeft();
  const std::uint64_t most = left.bytes / 4 * 3;
  const std::string limit = "the " + sizeText(std::max(kLeast, most)) + " that pictures may take, ";
  return {std::max(kLeast, most),
          limit + (most < kLeast ? "the least that is assumed"
                                 : std::string("three quarters of ") + left.of),
          "--max-memory SIZE changes that", 0};
}

std::string beyondBudget(double needed, const MemoryBudget& budget) {
  constexpr double kMostNumber = 9e18;
  const std::string used =
      budget.used == 0 ? "" : " leaves beside the " + sizeText(budget.used) + " in use";
  return "needs " + sizeText(static_cast<std::uint64_t>(std::min(needed, kMostNumber))) +
         " of memory, more than " + budget.limit + used + "; " + budget.remedy;
}

std::uint64_t peakMemoryBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace drevintool
