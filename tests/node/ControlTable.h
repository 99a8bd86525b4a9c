#pragma once

/// The 48 controls as artists and scripts see them, written down a second time.

namespace drevin::test {

/// What SetRange gave.
struct ExpectedRange {
  bool given = false;
  double min = 0.0;
  double max = 0.0;
};

struct ExpectedControl {
  const char* kind;
  const char* name;  ///< "" for tabs and texts
  const char* label;
  ExpectedRange range;
  bool forced;
  bool startsLine;
  int channelInput;     ///< -1 for none
  const char* initial;  ///< as the control prints its default
  const char* tooltip;  ///< null for none
};

extern const ExpectedControl expectedControls[48];

}  // namespace drevin::test
