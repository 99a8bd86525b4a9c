// Writes the manual page: the text of the file that is named, with what the command line's own
// parser knows in the places of @VERSION@, @SYNOPSIS@ and @SUBCOMMANDS@.

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "arguments/OptionFacts.h"

namespace {

using drevintool::OptionFacts;
using drevintool::SubcommandFacts;

// What the typesetter would take for its own: dashes, backslashes, and a point or quote that begins
// a line.
std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : text) {
    if (c == '-') {
      safe += "\\-";
    } else if (c == '\\') {
      safe += "\\e";
    } else if (c == '\'') {
      safe += "\\(aq";
    } else {
      safe += c;
    }
  }
  return safe.rfind('.', 0) == 0 ? "\\&" + safe : safe;
}

std::string heading(const OptionFacts& option) {
  if (option.positional) return "\\fI" + escaped(option.name) + "\\fR";
  std::string text = "\\fB" + escaped(option.name) + "\\fR";
  if (!option.shortName.empty()) text = "\\fB" + escaped(option.shortName) + "\\fR, " + text;
  return option.type.empty() ? text : text + " \\fI" + escaped(option.type) + "\\fR";
}

std::string optionText(const OptionFacts& option) {
  return ".TP\n" + heading(option) + "\n" + escaped(option.description) + ".\n";
}

std::string subcommandText(const SubcommandFacts& subcommand) {
  std::string text =
      ".SS drevin " + escaped(subcommand.name) + "\n" + escaped(subcommand.description) + ".\n";
  for (const OptionFacts& option : subcommand.options)
    text += optionText(option);
  return text;
}

std::string synopsisText(const SubcommandFacts& subcommand) {
  std::string text = ".B drevin " + escaped(subcommand.name) + "\n.RI [ options ]";
  for (const OptionFacts& option : subcommand.options) {
    if (option.positional) text += "\n.I " + escaped(option.name);
  }
  return text + "\n.br\n";
}

void replace(std::string& text, const std::string& place, std::string with) {
  if (!with.empty() && with.back() == '\n') with.pop_back();
  const std::size_t at = text.find(place);
  if (at != std::string::npos) text.replace(at, place.size(), with);
}

}  // namespace

int main(int count, char** texts) {
  std::ifstream file(count > 1 ? texts[1] : "");
  if (!file) {
    std::fputs("name the text of the manual page\n", stderr);
    return 1;
  }
  std::string page{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::string synopsis;
  std::string subcommands;
  for (const SubcommandFacts& subcommand : drevintool::subcommandFacts()) {
    synopsis += synopsisText(subcommand);
    subcommands += subcommandText(subcommand);
  }
  replace(page, "@VERSION@", DREVIN_VERSION);
  replace(page, "@SYNOPSIS@", synopsis);
  replace(page, "@SUBCOMMANDS@", subcommands);
  std::fputs(page.c_str(), stdout);
  return 0;
}
