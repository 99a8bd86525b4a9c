#include "terminal/Messages.h"

#include <cstdio>

#include "terminal/OneLine.h"

namespace drevintool {
namespace {

// In one piece, so that lines of several processes do not mix.
void print(const std::string& line) {
  std::fputs(line.c_str(), stderr);
}

}  // namespace

void printError(const std::string& text) {
  print("drevin: error: " + oneLine(text) + "\n");
}

void printWarning(const std::string& text) {
  print("drevin: warning: " + oneLine(text) + "\n");
}

}  // namespace drevintool
