#pragma once

/// Sizes and repetitions of the frame table.

#include "frames/FrameCase.h"

namespace drevin::bench {

struct TablePlan {
  FrameSize frame{1920, 1080};
  FrameSize fourK{3840, 2160};
  FrameSize eightK{7680, 4320};
  int smallBlur = 8;    ///< px, as all blurs
  int growthBlur = 32;  ///< what the growth begins at
  int middleBlur = 64;
  int deepBlur = 128;
  int largeBlur = 256;
  int view = 256;       ///< side of the part of a 4K frame, px
  int rounds = 3;       ///< medians are of so many
  int rowsTimed = 12;   ///< of the row-by-row forms in each round
  int rowsChecked = 4;  ///< of them so many against the yardstick
};

/// Small pictures, small blurs, one round: everything runs, no time means anything.
inline TablePlan quickPlan() {
  TablePlan plan;
  plan.frame = {160, 90};
  plan.fourK = {320, 180};
  plan.eightK = {400, 240};
  plan.growthBlur = 12;
  plan.middleBlur = 16;
  plan.deepBlur = 24;
  plan.largeBlur = 32;
  plan.view = 32;
  plan.rounds = 1;
  plan.rowsTimed = 3;
  plan.rowsChecked = 2;
  return plan;
}

}  // namespace drevin::bench
