#pragma once

/// Renders that know nothing of one another, at the same time: what the machine gives to two
/// threads, whatever a program makes of it.

#include <memory>
#include <vector>

#include "frames/ChildProcess.h"
#include "frames/FrameCase.h"

namespace drevin::bench {

class SideBySide {
 public:
  /// So many processes of this program with the flat picture of frameCase(), on one thread each.
  /// Returns when all stand ready. Throws std::runtime_error if one fails, as all below.
  SideBySide(int processes, const FrameCase& picture);

  /// Renders the picture in all of them, begun at the same time: the seconds of the longest.
  double seconds();

 private:
  std::vector<std::unique_ptr<ChildProcess>> processes_;
};

/// The part of such a process: prints a line when the picture stands ready, then, for every line of
/// standard input, renders it and prints the seconds.
void renderOnRequest(const FrameCase& picture);

}  // namespace drevin::bench
