#include "render/LittleMemory.h"

#include <execinfo.h>
#include <malloc.h>

#include <array>

#include "picture/MemoryBudget.h"

namespace drevintool {

void prepareForLittleMemory() {
  // A heap of its own takes 64 MiB of addresses for each thread, used or not.
  constexpr int kHeaps = 2;
  if (memoryLimits().addressSpace) mallopt(M_ARENA_MAX, kHeaps);
  // An exception that passes through the system's library, as one from std::call_once does, makes
  // it load the unwinder, and end the process if it cannot. So does this.
  std::array<void*, 1> frames{};
  backtrace(frames.data(), static_cast<int>(frames.size()));
}

}  // namespace drevintool
