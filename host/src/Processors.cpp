/// How many processors this process may use.

#include <sched.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "CgroupQuota.h"
#include "DDImage/Thread.h"
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

/// Folders of this process's own group and of every group above it.
std::vector<std::string> cgroupFolders() {
  std::vector<std::string> folders;
  std::ifstream file("/proc/self/cgroup");
  for (std::string line; std::getline(file, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = line.substr(first + 1, second - first - 1);
    if (!controllers.empty() && (',' + controllers + ',').find(",cpu,") == std::string::npos) {
      continue;
    }
    const std::string root = controllers.empty() ? "/sys/fs/cgroup" : "/sys/fs/cgroup/cpu";
    std::string path = line.substr(second + 1);
    while (!path.empty() && path != "/") {
      folders.push_back(root + path);
      path.resize(path.rfind('/'));
    }
  }
  folders.emplace_back("/sys/fs/cgroup");
  folders.emplace_back("/sys/fs/cgroup/cpu");
  return folders;
}

}  // namespace

unsigned usableProcessors() {
  unsigned processors = affinityProcessors();
  for (const std::string& folder : cgroupFolders()) {
    const std::optional<unsigned> quota = cgroupProcessors(folder);
    if (quota) processors = std::min(processors, *quota);
  }
  return std::max(1U, processors);
}

void setThreadCount(unsigned threads) {
  DD::Image::Thread::numCPUs = threads != 0 ? threads : usableProcessors();
}

}  // namespace embedded

unsigned DD::Image::Thread::numCPUs = embedded::usableProcessors();
