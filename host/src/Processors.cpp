/// How many processors this process may use.

#include <sched.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "CgroupQuota.h"
#include "DDImage/Thread.h"
#include "EmbeddedHost/ProcessorQuota.h"
#include "EmbeddedHost/Render.h"

namespace embedded {

namespace {

unsigned affinityProcessors() {
  // Larger than cpu_set_t, so that machines with very many processors are seen whole.
  constexpr int most = 8192;
  cpu_set_t* set = CPU_ALLOC(most);
  if (set == nullptr) return std::max(1U, std::thread::hardware_concurrency());
  const std::size_t size = CPU_ALLOC_SIZE(most);
  CPU_ZERO_S(size, set);
  const bool known = sched_getaffinity(0, size, set) == 0;
  const int count = known ? CPU_COUNT_S(size, set) : 0;
  CPU_FREE(set);
  return count > 0 ? static_cast<unsigned>(count)
                   : std::max(1U, std::thread::hardware_concurrency());
}

}  // namespace

std::optional<unsigned> quotaProcessors(const CgroupPlaces& places) {
  std::optional<unsigned> least;
  for (const std::string& folder : cgroupFolders("cpu", places)) {
    const std::optional<unsigned> quota = cgroupProcessors(folder);
    if (quota) least = std::min(least.value_or(*quota), *quota);
  }
  return least;
}

unsigned usableProcessors() {
  const unsigned processors = affinityProcessors();
  return std::max(1U, std::min(processors, quotaProcessors().value_or(processors)));
}

void setThreadCount(unsigned threads) {
  DD::Image::Thread::numCPUs = threads != 0 ? threads : usableProcessors();
}

}  // namespace embedded

unsigned DD::Image::Thread::numCPUs = embedded::usableProcessors();
