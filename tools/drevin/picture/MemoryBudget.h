#pragma once

/// How much memory a picture may take: sizes are checked against it before anything is allocated.

#include <cstdint>
#include <optional>

namespace drevintool {

/// From now on the process may take so many bytes in all; 0: most of what is free.
void limitMemory(std::uint64_t bytes);

/// What limits this process, in bytes that it may still take; nothing where there is no limit.
struct MemoryLimits {
  std::optional<std::uint64_t> free;  ///< of the machine
  std::optional<std::uint64_t> cgroup;
  std::optional<std::uint64_t> addressSpace;
};
MemoryLimits memoryLimits();

/// Bytes that pictures may still take. Of a limit that was set: what the process does not have yet.
/// Else the least of the free memory, the cgroup's limit and the address space limit, less a
/// reserve for the work on the pixels, and at least 64 MiB.
std::uint64_t memoryBudget();

/// The most memory that this process has had so far, in bytes.
std::uint64_t peakMemoryBytes();

}  // namespace drevintool
