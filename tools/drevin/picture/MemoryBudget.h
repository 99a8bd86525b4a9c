#pragma once

/// How much memory a picture may take: sizes are checked against it before anything is allocated.

#include <cstdint>
#include <optional>
#include <string>

namespace drevintool {

/// What --max-memory says.
struct MemoryLimit {
  std::uint64_t bytes = 0;  ///< 0: most of what is free
  std::string text;         ///< as it was given
};

/// From now on the process may take so much in all. To be called before pictures are read.
void limitMemory(const MemoryLimit& limit);

/// What limits this process, in bytes that it may still take; nothing where there is no limit.
struct MemoryLimits {
  std::optional<std::uint64_t> free;  ///< of the machine
  std::optional<std::uint64_t> cgroup;
  std::optional<std::uint64_t> addressSpace;
};
MemoryLimits memoryLimits();

/// What pictures may still take, and why not more.
struct MemoryBudget {
  std::uint64_t bytes = 0;
  std::string limit;       ///< where the number is from, for messages
  std::string remedy;      ///< for messages
  std::uint64_t used = 0;  ///< bytes that the process has already, if they count; else 0
};

/// Of a limit that was set: what the process does not have yet. Else three quarters of the least of
/// the free memory, the cgroup's limit and the address space limit, and at least 64 MiB: the rest
/// is for the work on the pixels.
MemoryBudget memoryBudget();

/// "needs 40.1 MiB of memory, more than --max-memory 32M leaves beside the 25.3 MiB in use; give it
/// more": of what needs more bytes than the budget has.
std::string beyondBudget(double needed, const MemoryBudget& budget);

/// The most memory that this process has had so far, in bytes.
std::uint64_t peakMemoryBytes();

}  // namespace drevintool
