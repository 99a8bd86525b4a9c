#pragma once

/// The processors that control groups leave to this process.

#include <optional>

#include "EmbeddedHost/CgroupFolders.h"

namespace embedded {

/// Processors that the quotas of the process's own group and of the groups above it allow, of
/// either version of control groups, rounded up: the least of them. Nothing where none has a quota.
DD_EXPORT std::optional<unsigned> quotaProcessors(const CgroupPlaces& places = {});

}  // namespace embedded
