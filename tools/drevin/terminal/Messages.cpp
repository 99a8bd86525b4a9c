#include "terminal/Messages.h"

#include <unistd.h>

#include <cstdlib>

#include "terminal/Colours.h"
#include "terminal/OneLine.h"
#include "terminal/ProgressBar.h"
#include "terminal/StandardError.h"
#include "terminal/Terminal.h"

namespace drevintool {
namespace {

bool isTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

// In one piece, so that lines of several processes do not mix; on a terminal over a bar of
// progress, if there is one.
void print(const std::string& line) {
  writeStandardError((drawsOnError() ? kClearLine : "") + line);
}

std::string beginning(const std::string& kind, const char* colour) {
  const std::string words = "drevin: " + kind + ":";
  const bool wanted = coloursWanted(isTerminal(), std::getenv("NO_COLOR"), std::getenv("TERM"));
  return wanted ? colour + words + kPlain : words;
}

}  // namespace

void printError(const std::string& text) {
  print(beginning("error", kRed) + " " + oneLine(text) + "\n");
}

void printWarning(const std::string& text) {
  print(beginning("warning", kYellow) + " " + oneLine(text) + "\n");
}

void printNote(const std::string& text) {
  print("drevin: " + oneLine(text) + "\n");
}

}  // namespace drevintool
