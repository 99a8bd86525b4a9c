#pragma once

/// What comes before the first picture is read.

#include "arguments/RenderArguments.h"
#include "render/FrameJob.h"
#include "sequence/SequencePlan.h"

namespace drevintool {

/// Threads for the host and for reading and writing pictures.
void chooseThreads(unsigned threads);

/// Gives the process the threads, the limit of memory and the order of deep samples that were asked
/// for. Returns the number of threads.
unsigned setUpProcess(const RenderArguments& arguments);

/// Shows faults of the controls and of the camera on a node of their own. Throws ToolError.
void checkControls(const RenderArguments& arguments, const SequencePlan& plan,
                   const FrameShare& share);

}  // namespace drevintool
