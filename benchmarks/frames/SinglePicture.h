#pragma once

#include "frames/FrameCase.h"

namespace drevin::bench {

/// Renders the picture once and prints the time of each stage, that of the node's own row-by-row
/// form (three rows, scaled) and how far the picture strays from these: quick, for tuning.
void printSinglePicture(const FrameCase& picture);

}  // namespace drevin::bench
