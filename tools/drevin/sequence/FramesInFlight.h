#pragma once

/// How many frames are rendered at a time.

#include <cstddef>
#include <cstdint>

#include "arguments/RenderArguments.h"

namespace drevintool {

/// One for frames of more than half a million pixels: each keeps all threads busy by itself. Of
/// smaller ones as many as make a million pixels together, at most one for each thread and eight in
/// all, and never more than there are frames. `pixels` of 0 or less are unknown and count as many.
unsigned usefulFramesInFlight(std::int64_t pixels, unsigned threads, std::size_t frames);

/// As many as the arguments ask for, else as are useful. Frames do not share what memory there is
/// where that was limited, unless it is asked for.
unsigned chooseFramesInFlight(const RenderArguments& arguments, std::int64_t pixels,
                              unsigned threads, std::size_t frames);

/// Shares the threads out among the frames in flight, and makes operators choose theirs by that.
/// Returns the threads of each, at least 1.
unsigned shareThreads(unsigned threads, unsigned inFlight);

}  // namespace drevintool
