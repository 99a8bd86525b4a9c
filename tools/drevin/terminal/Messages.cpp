#include "terminal/Messages.h"

#include <unistd.h>

#include <cstdio>

#include "terminal/OneLine.h"
#include "terminal/ProgressBar.h"

namespace drevintool {
namespace {

// In one piece, so that lines of several processes do not mix; on a terminal over a bar of
// progress, if there is one.
void print(const std::string& line) {
  const bool terminal = isatty(STDERR_FILENO) == 1;
  std::fputs(((terminal ? kClearLine : "") + line).c_str(), stderr);
}

}  // namespace

void printError(const std::string& text) {
  print("drevin: error: " + oneLine(text) + "\n");
}

void printWarning(const std::string& text) {
  print("drevin: warning: " + oneLine(text) + "\n");
}

void printNote(const std::string& text) {
  print("drevin: " + oneLine(text) + "\n");
}

}  // namespace drevintool
