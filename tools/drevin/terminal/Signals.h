#pragma once

/// Ending early and cleanly on SIGINT and SIGTERM.

namespace drevintool {

/// From now on SIGINT and SIGTERM are noted and ask running renders to stop, and SIGPIPE and
/// SIGXFSZ no longer kill, so that writing reports the error itself.
void catchSignals();

/// The number of the signal that was noted last, or 0.
int caughtSignal() noexcept;

/// Throws ToolError (Interrupted or Terminated) if a signal was noted.
void throwIfInterrupted();

}  // namespace drevintool
