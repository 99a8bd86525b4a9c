#pragma once

/// How much memory a picture may take: sizes are checked against it before anything is allocated.

#include <cstdint>

namespace drevintool {

/// Bytes that this process may still allocate: the least of the free memory, the cgroup's limit and
/// the address space limit, less a reserve for the work on the pixels. At least 64 MiB.
std::uint64_t memoryBudget();

}  // namespace drevintool
