#pragma once

/// The memory that control groups leave to this process.

#include <cstdint>
#include <optional>

#include "EmbeddedHost/CgroupFolders.h"

namespace drevintool {

/// Bytes that may still be taken: the least that the process's own group and the groups above it
/// leave, of either version of control groups. Nothing where none has a limit. A farm's job is such
/// a group, some folders below the root.
std::optional<std::uint64_t> cgroupMemoryLeft(const embedded::CgroupPlaces& places = {});

}  // namespace drevintool
