#include <atomic>

#include "EmbeddedHost/Render.h"

namespace embedded {

namespace {

std::atomic<bool> wanted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set from signal handlers");

}  // namespace

void requestAbort() noexcept {
  wanted.store(true);
}
bool abortRequested() noexcept {
  return wanted.load();
}
void clearAbort() noexcept {
  wanted.store(false);
}

}  // namespace embedded
