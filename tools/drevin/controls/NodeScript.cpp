#include "controls/NodeScript.h"

#include <algorithm>
#include <utility>

#include "terminal/NameList.h"

namespace drevintool {
namespace {

class Scanner {
 public:
  Scanner(const std::string& text, std::size_t line) : text_(text), line_(line) {}

  std::size_t line() const { return line_; }

  // The words of the next command; none at the end of the text.
  std::vector<ScriptWord> command() {
    skipToCommand();
    std::vector<ScriptWord> words;
    while (!atCommandEnd()) {
      if (words.size() == kMostScriptValues) fail(line_, "a command of too many words");
      words.push_back(word());
      skipBlanks();
    }
    return words;
  }

  // The next of all words, whatever lines they stand on; false at the end.
  bool nextWord(ScriptWord& found) {
    while (at_ < text_.size() && (isBlank(text_[at_]) || endsCommand(text_[at_])))
      step();
    if (at_ == text_.size()) return false;
    found = word();
    return true;
  }

 private:
  static bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
  }
  static bool endsCommand(char c) { return c == '\n' || c == ';'; }

  [[noreturn]] void fail(std::size_t line, const std::string& reason) const {
    throw ScriptFault("line " + std::to_string(line) + ": " + reason);
  }

  void step() {
    if (text_[at_] == '\n') ++line_;
    ++at_;
  }

  void skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_]))
      step();
  }

  bool atCommandEnd() const { return at_ == text_.size() || endsCommand(text_[at_]); }

  void skipToCommand() {
    while (at_ < text_.size()) {
      if (text_[at_] == '#') {
        while (at_ < text_.size() && text_[at_] != '\n')
          step();
      } else if (isBlank(text_[at_]) || endsCommand(text_[at_])) {
        step();
      } else {
        return;
      }
    }
  }

  ScriptWord word() {
    if (text_[at_] == '{') return {braced(), true};
    if (text_[at_] == '"') return {quoted(), false};
    return {bare(), false};
  }

  // Backslashes stand for themselves in braces, but keep a brace from counting.
  std::string braced() {
    const std::size_t first = line_;
    const std::size_t begin = at_ + 1;
    int depth = 0;
    while (at_ < text_.size()) {
      const char c = text_[at_];
      step();
      if (c == '\\' && at_ < text_.size()) {
        step();
      } else if (c == '{') {
        if (++depth > kMostScriptDepth) fail(line_, "more than 100 braces in one another");
      } else if (c == '}' && --depth == 0) {
        return text_.substr(begin, at_ - 1 - begin);
      }
    }
    fail(first, "a brace that has no end");
  }

  std::string quoted() {
    const std::size_t first = line_;
    step();
    std::string text;
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '"') {
        step();
        return text;
      }
      text += c == '\\' ? escaped() : c;
      step();
    }
    fail(first, "a quote that has no end");
  }

  std::string bare() {
    std::string text;
    while (!atCommandEnd() && !isBlank(text_[at_])) {
      text += text_[at_] == '\\' ? escaped() : text_[at_];
      step();
    }
    return text;
  }

  // Goes to the character behind a backslash, if there is one, and tells what the two stand for.
  char escaped() {
    if (at_ + 1 == text_.size()) return '\\';
    step();
    const char c = text_[at_];
    return c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
  }

  const std::string& text_;
  std::size_t line_;
  std::size_t at_ = 0;
};

void checkValues(std::size_t values, std::size_t line) {
  if (values <= kMostScriptValues) return;
  throw ScriptFault("line " + std::to_string(line) + ": more than " +
                    std::to_string(kMostScriptValues) + " nodes and values of them");
}

std::vector<ScriptKnob> parseKnobs(const std::string& body, std::size_t line) {
  Scanner scanner(body, line);
  std::vector<ScriptKnob> knobs;
  for (std::vector<ScriptWord> words = scanner.command(); !words.empty();
       words = scanner.command()) {
    ScriptKnob knob{std::move(words.front().text), {}};
    if (words.size() == 2) knob.value = std::move(words.back());
    if (words.size() > 2) {
      for (std::size_t i = 1; i < words.size(); ++i)
        knob.value.text += (i == 1 ? "" : " ") + words[i].text;
    }
    knobs.push_back(std::move(knob));
    checkValues(knobs.size(), line);
  }
  return knobs;
}

// "node1|Drevin|12" names the class between signs.
bool namesClass(const std::string& word, const std::string& className) {
  const std::string signs = "|" + word + "|";
  return signs.find("|" + className + "|") != std::string::npos;
}

bool isClone(const std::vector<ScriptWord>& words, const std::string& className) {
  if (words.size() < 3 || words.front().text != "clone") return false;
  return std::any_of(words.begin() + 1, words.end() - 1, [&](const ScriptWord& word) {
    return !word.braced && namesClass(word.text, className);
  });
}

bool endsWithGroup(const std::string& className) {
  const std::string ending = "Group";
  return className.size() >= ending.size() &&
         className.compare(className.size() - ending.size(), ending.size(), ending) == 0;
}

bool beginsGroup(const std::vector<ScriptWord>& words) {
  const std::string& first = words.front().text;
  if (words.size() == 2) return endsWithGroup(first);
  return words.size() > 2 && first == "clone" && isClone(words, "Group");
}

// The groups that are open, one in another.
class OpenGroups {
 public:
  // Takes a command with braces into account, or one without.
  void read(const std::vector<ScriptWord>& words, std::size_t line) {
    if (words.back().braced && beginsGroup(words)) {
      if (++depth_ <= kMostNames) names_.push_back(nameOf(words.back().text, line));
    } else if (words.size() == 1 && words.front().text == "end_group" && depth_ > 0) {
      if (--depth_ < names_.size()) names_.pop_back();
    }
  }

  std::string path() const {
    std::string path;
    for (const std::string& name : names_)
      path += (path.empty() ? "" : ".") + name;
    return path;
  }

 private:
  // Of more in one another the outer ones tell enough.
  static constexpr std::size_t kMostNames = 20;

  // What else a group holds may be no list of knobs.
  static std::string nameOf(const std::string& body, std::size_t line) {
    try {
      const ScriptNode group{"Group", line, parseKnobs(body, line), false, {}};
      const ScriptWord* name = group.find("name");
      if (name != nullptr) return shortName(name->text);
    } catch (const ScriptFault&) {
      // Without a name its place in the script is its name.
    }
    return "line " + std::to_string(line);
  }

  std::vector<std::string> names_;
  std::size_t depth_ = 0;
};

std::string withoutByteOrderMark(const std::string& text) {
  const std::string mark = "\xEF\xBB\xBF";
  return text.rfind(mark, 0) == 0 ? text.substr(mark.size()) : text;
}

}  // namespace

const ScriptWord* ScriptNode::find(const std::string& knob) const {
  const auto found = std::find_if(knobs.rbegin(), knobs.rend(),
                                  [&](const ScriptKnob& k) { return k.name == knob; });
  return found == knobs.rend() ? nullptr : &found->value;
}

std::vector<ScriptNode> parseNodeScript(const std::string& text, const std::string& className) {
  if (text.size() > kMostScriptBytes) throw ScriptFault("is larger than 64 MiB");
  const std::string plain = withoutByteOrderMark(text);
  Scanner scanner(plain, 1);
  std::vector<ScriptNode> nodes;
  OpenGroups groups;
  std::size_t values = 0;
  while (true) {
    const std::vector<ScriptWord> words = scanner.command();
    if (words.empty()) return nodes;
    const auto lines = std::count(words.back().text.begin(), words.back().text.end(), '\n');
    const std::size_t line = scanner.line() - static_cast<std::size_t>(lines);
    groups.read(words, line);
    if (!words.back().braced) continue;
    const bool clone = isClone(words, className);
    if (!clone && (words.size() != 2 || words.front().text != className)) continue;
    nodes.push_back({className, line, parseKnobs(words.back().text, line), clone, groups.path()});
    values += 1 + nodes.back().knobs.size();
    checkValues(values, line);
  }
}

std::vector<ScriptWord> scriptWords(const std::string& text) {
  Scanner scanner(text, 1);
  std::vector<ScriptWord> words;
  for (ScriptWord word; scanner.nextWord(word);) {
    words.push_back(word);
    checkValues(words.size(), scanner.line());
  }
  return words;
}

}  // namespace drevintool
