#pragma once

/// How many frames are rendered at a time.

#include <cstddef>
#include <cstdint>

namespace drevintool {

/// One for frames of more than half a million pixels: each keeps all threads busy by itself. Of
/// smaller ones as many as make a million pixels together, at most one for each thread and eight in
/// all, and never more than there are frames. `pixels` of 0 or less are unknown and count as many.
unsigned usefulFramesInFlight(std::int64_t pixels, unsigned threads, std::size_t frames);

}  // namespace drevintool
