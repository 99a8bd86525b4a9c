#pragma once

/// Nodes and their values in a script as the host saves it.
///
/// A script is a list of commands, one a line, of words apart from one another by blanks. A word is
/// bare, "quoted" with backslashes before special characters, or {braced}, which may nest and run
/// over lines. A node is the command `Class {...}`; in its braces stand lines `knob value`.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace drevintool {

constexpr std::size_t kMostScriptBytes = std::size_t{64} << 20;
constexpr int kMostScriptDepth = 100;  ///< of braces in braces
/// Of words in one command, and of the nodes of a class and their knobs together.
constexpr std::size_t kMostScriptValues = std::size_t{1} << 18;

/// A text that is no such script. what() is one line that names the line of the script.
class ScriptFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ScriptWord {
  std::string text;  ///< without quotes or the outer braces; quoted and bare ones unescaped
  bool braced = false;
};

struct ScriptKnob {
  std::string name;
  ScriptWord value;  ///< of a knob with several words, those as one text
};

struct ScriptNode {
  std::string className;
  std::size_t line = 1;  ///< where it begins
  std::vector<ScriptKnob> knobs;
  bool clone = false;  ///< its values are those of a node elsewhere
  std::string group;   ///< that it lies in, "Outer.Inner"; empty: none

  /// The last value of that knob, or null.
  const ScriptWord* find(const std::string& knob) const;
};

/// The nodes of that class, in order, those in groups with the groups' names, and clones
/// (`clone ID|Class {...}`). What lies between a command `Group {...}`, or of a class whose name
/// ends so, and its `end_group` is in that group. A byte-order mark before them is passed over.
/// Throws ScriptFault for braces and quotes that do not end, braces deeper than kMostScriptDepth,
/// texts of more than kMostScriptBytes, and more than kMostScriptValues.
std::vector<ScriptNode> parseNodeScript(const std::string& text, const std::string& className);

/// The words of a braced value. Throws ScriptFault.
std::vector<ScriptWord> scriptWords(const std::string& text);

}  // namespace drevintool
