#pragma once

/// Splats of a few hundred records put in order by kind.

#include <cstdint>

#include "engine/RowReach.h"

namespace drevin {

/// Records that are put in order at once, at most.
constexpr int dvKindOrderMost = 256;

/// `places`: by place in the order, that of the record among `count`. By ascending kind; records of
/// one kind stay in theirs.
void orderByKind(const dvSplatKind* kinds, int count, std::uint16_t* places);

}  // namespace drevin
