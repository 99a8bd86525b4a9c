#pragma once

/// The command line in data, for what is written from it: the manual page and completion in shells.

#include <string>
#include <vector>

namespace drevintool {

struct OptionFacts {
  std::string name;         ///< "--input"; of a positional one "DIR"
  std::string shortName;    ///< "-h", or empty
  std::string type;         ///< what its value is called, such as FILE; empty for a flag
  std::string description;  ///< for people, one line
  bool positional = false;
};

struct SubcommandFacts {
  std::string name;
  std::string description;
  std::vector<OptionFacts> options;  ///< in the order of --help
};

/// All subcommands, in the order of --help.
std::vector<SubcommandFacts> subcommandFacts();

/// The options of the command itself.
std::vector<OptionFacts> commandOptionFacts();

}  // namespace drevintool
