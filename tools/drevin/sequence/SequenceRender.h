#pragma once

/// Rendering all pictures of a sequence.

#include "arguments/RenderArguments.h"
#include "render/FrameJob.h"
#include "sequence/SequencePlan.h"

namespace drevintool {

/// Renders the pictures of the plan on `threads` threads and writes the report of all of them, if
/// there is one. Returns 0, the exit code of the first picture that failed, or 1 if pictures failed
/// and the arguments say to go on after them; what failed is told on standard error. Throws
/// ToolError (InputUnreadable before anything is rendered; Interrupted, Terminated).
int renderSequence(const FrameShare& share, const SequencePlan& plan,
                   const RenderArguments& arguments, unsigned threads);

}  // namespace drevintool
