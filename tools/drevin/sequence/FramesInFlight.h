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

/// The threads of the frame of that place in the sequence, at least 1: frames that begin one behind
/// the other, as many as are in flight, have all threads together, where there are enough.
unsigned threadsOfFrame(unsigned threads, unsigned inFlight, std::size_t frame);

/// Makes operators choose their own threads by that too: as many as the frames with the most have.
void shareThreads(unsigned threads, unsigned inFlight);

}  // namespace drevintool
