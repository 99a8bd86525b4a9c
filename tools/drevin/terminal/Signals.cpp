#include "terminal/Signals.h"

#include <atomic>
#include <csignal>

#include "EmbeddedHost/Render.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

std::atomic<int> signalNumber{0};
static_assert(std::atomic<int>::is_always_lock_free, "written by a signal handler");

void note(int number) {
  signalNumber = number;
  embedded::requestAbort();
}

void install(int number, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  sigaction(number, &action, nullptr);
}

}  // namespace

void catchSignals() {
  install(SIGINT, note);
  install(SIGTERM, note);
  install(SIGPIPE, SIG_IGN);
  install(SIGXFSZ, SIG_IGN);
}

int caughtSignal() noexcept {
  return signalNumber;
}

void throwIfInterrupted() {
  if (signalNumber == SIGINT) throw ToolError(ExitCode::Interrupted, "interrupted");
  if (signalNumber == SIGTERM) throw ToolError(ExitCode::Terminated, "terminated");
}

}  // namespace drevintool
