#pragma once

/// The control groups that bound a process.

#include <string>
#include <vector>

#include "DDImage/Export.h"

namespace embedded {

/// Where the system tells of control groups.
struct CgroupPlaces {
  std::string ofProcess = "/proc/self/cgroup";
  std::string root = "/sys/fs/cgroup";
};

/// Folders of the process's own group and of every group above it, of version 2 and of a controller
/// ("cpu", "memory") of version 1, the roots last. A farm's job is such a group, some folders below
/// the root. Folders need not be there.
DD_EXPORT std::vector<std::string> cgroupFolders(const std::string& controller,
                                                 const CgroupPlaces& places = {});

}  // namespace embedded
