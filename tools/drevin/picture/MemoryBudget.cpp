#include "picture/MemoryBudget.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <limits>
#include <string>

#include "picture/CgroupMemory.h"

namespace drevintool {
namespace {

constexpr std::uint64_t kUnknown = std::numeric_limits<std::uint64_t>::max();

// The number at the start of a file; unknown if it is missing or says "max".
std::uint64_t numberIn(const char* path) {
  std::ifstream file(path);
  std::uint64_t number = 0;
  return file >> number ? number : kUnknown;
}

std::uint64_t availableMemory() {
  std::ifstream file("/proc/meminfo");
  std::string key;
  std::uint64_t kibibytes = 0;
  std::string unit;
  while (file >> key >> kibibytes) {
    if (key == "MemAvailable:") return kibibytes * 1024;
    std::getline(file, unit);
  }
  return kUnknown;
}

std::uint64_t leftOf(std::uint64_t limit, std::uint64_t used) {
  if (limit == kUnknown) return kUnknown;
  return used == kUnknown || used >= limit ? 0 : limit - used;
}

std::uint64_t addressSpace() {
  rlimit limit{};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kUnknown;
  const std::uint64_t pages = numberIn("/proc/self/statm");
  const std::uint64_t pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  return leftOf(limit.rlim_cur, pages == kUnknown ? 0 : pages * pageSize);
}

// The second number of the file, in pages.
std::uint64_t residentBytes() {
  std::ifstream file("/proc/self/statm");
  std::uint64_t size = 0;
  std::uint64_t resident = 0;
  if (!(file >> size >> resident)) return 0;
  return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

std::atomic<std::uint64_t> setLimit{0};

}  // namespace

MemoryLimits memoryLimits() {
  const auto known = [](std::uint64_t bytes) {
    return bytes == kUnknown ? std::nullopt : std::optional<std::uint64_t>(bytes);
  };
  return {known(availableMemory()), cgroupMemoryLeft(), known(addressSpace())};
}

void limitMemory(std::uint64_t bytes) {
  setLimit = bytes;
}

std::uint64_t memoryBudget() {
  if (const std::uint64_t limit = setLimit) return leftOf(limit, residentBytes());
  constexpr std::uint64_t kLeast = std::uint64_t{64} << 20;
  constexpr std::uint64_t kMost = std::uint64_t{1} << 40;
  const MemoryLimits limits = memoryLimits();
  const std::uint64_t free = std::min({limits.free.value_or(kMost), limits.cgroup.value_or(kMost),
                                       limits.addressSpace.value_or(kMost), kMost});
  return std::max(kLeast, free / 4 * 3);
}

}  // namespace drevintool
