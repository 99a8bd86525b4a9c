#include "completion/Completion.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <utility>

#include "EmbeddedHost/Node.h"
#include "arguments/OptionFacts.h"
#include "controls/CameraKeys.h"
#include "controls/PluginSearch.h"
#include "depth/DepthChoice.h"
#include "picture/ChannelNames.h"
#include "picture/ExrCompression.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using DD::Image::Knob;
using Words = std::vector<std::string>;

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// Options whose files have names of a kind; files of all others may have any.
const std::vector<std::pair<std::string, Words>>& fileKinds() {
  static const std::vector<std::pair<std::string, Words>> kinds = {
      {"--input", {".exr"}},   {"--deep", {".exr"}},  {"--kernel", {".exr"}},
      {"--mattes", {".exr"}},  {"files", {".exr"}},   {"--output", {".exr", ".png"}},
      {"--report", {".json"}}, {"--script", {".nk"}}, {"--plugin", {".so"}},
      {"--camera", {".json"}}};
  return kinds;
}

Words extensionsFor(const OptionFacts& option) {
  for (const auto& [name, extensions] : fileKinds()) {
    if (name == option.name) return extensions;
  }
  return option.type.find("FILE") == std::string::npos ? Words{} : Words{""};
}

Words beginning(const Words& words, const std::string& start) {
  Words fitting;
  std::copy_if(words.begin(), words.end(), std::back_inserter(fitting),
               [&](const std::string& word) { return startsWith(word, start); });
  return fitting;
}

Words controlNames(const Node& node) {
  Words names;
  for (const auto& knob : node.knobs()) {
    if (!knob->name().empty()) names.push_back(knob->name() + "=");
  }
  return names;
}

bool hasEnding(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The pictures that are named on the line, flat or deep.
Words picturesIn(const Words& typed) {
  Words files;
  for (std::size_t i = 1; i + 1 < typed.size(); ++i) {
    const std::string& word = typed[i];
    const bool behindOption = typed[i - 1] == "--input" || typed[i - 1] == "--deep";
    const bool positional = typed.front() == "inspect" && !startsWith(typed[i - 1], "--");
    for (const char* option : {"--input=", "--deep="}) {
      if (startsWith(word, option)) files.push_back(word.substr(word.find('=') + 1));
    }
    if (behindOption || (positional && hasEnding(word, ".exr"))) files.push_back(word);
  }
  return files;
}

// Of those pictures the channels that could be a depth; the usual ones where no picture tells.
Words depthChannels(const Words& typed) {
  Words names = {"none"};
  for (const std::string& file : picturesIn(typed)) {
    try {
      for (const std::string& name : depthNamesOf(file)) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
      }
    } catch (const ToolError&) {
      continue;  // a shell has no use for messages
    }
  }
  return names.size() > 1 ? names : Words{"none", "Z", "R", "G", "B", "A"};
}

Words valuesOf(const Knob& knob, const Words& typed) {
  if (knob.name() == "depthChannel") return depthChannels(typed);
  switch (knob.type()) {
    case Knob::Type::Boolean:
      return {"true", "false"};
    case Knob::Type::Choice:
      return knob.choices();
    case Knob::Type::Channels:
      return {"none", "R", "G", "B", "A", "Z"};
    case Knob::Type::Mask:
      return {"none", "all", "rgb", "rgba"};
    default:
      return {};
  }
}

// "NAME=", or "NAME=VALUE"; of a list only what stands behind its last comma is completed.
Completion settingOf(const std::string& typed, bool list, const Words& line) {
  const Node node(loadNodeClass({}));
  const std::size_t equals = typed.find('=');
  Completion completion;
  if (equals == std::string::npos) {
    completion.words = beginning(controlNames(node), typed);
    completion.open = true;
    return completion;
  }
  const Knob* knob = node.knob(typed.substr(0, equals));
  if (knob == nullptr) return completion;
  const std::size_t comma = list ? typed.find_last_of("=,;") : equals;
  for (const std::string& value : valuesOf(*knob, line))
    completion.words.push_back(typed.substr(0, comma + 1) + value);
  completion.words = beginning(completion.words, typed);
  return completion;
}

// Keys of a camera, which more may follow, or header; a file is proposed too.
Words cameraWords() {
  Words words = {"header"};
  for (const CameraKey& key : cameraKeys())
    words.push_back(std::string(key.name) + "=");
  return words;
}

Words choicesOf(const std::string& option) {
  if (option == "--camera") return cameraWords();
  if (option == "--compression") return splitList(compressionList());
  if (option == "--type") return {"half", "float", "keep"};
  if (option == "--deep-order") return {"near-first", "far-first"};
  if (option == "--channels") return {"rgb", "rgba", "all"};
  return {};
}

Completion valueOf(const OptionFacts& option, const std::string& typed, const Words& line) {
  if (option.name == "--set" || option.name == "--vary") {
    return settingOf(typed, option.name == "--vary", line);
  }
  Completion completion;
  completion.words = beginning(choicesOf(option.name), typed);
  completion.extensions = extensionsFor(option);
  completion.folders = !completion.extensions.empty() || option.name == "DIR";
  const bool allOpen = !completion.words.empty() &&
                       std::all_of(completion.words.begin(), completion.words.end(),
                                   [](const std::string& word) { return word.back() == '='; });
  completion.open = allOpen;
  return completion;
}

Completion optionNames(const SubcommandFacts& subcommand, const Words& line) {
  const std::string& typed = line.back();
  Completion completion;
  for (const OptionFacts& option : subcommand.options) {
    if (option.positional) {
      if (startsWith(typed, "-")) continue;
      const Completion files = valueOf(option, typed, line);
      completion.extensions = files.extensions;
      completion.folders = files.folders;
    } else if (startsWith(option.name, typed)) {
      completion.words.push_back(option.name);
    }
  }
  return completion;
}

const OptionFacts* optionNamed(const SubcommandFacts& subcommand, const std::string& name) {
  for (const OptionFacts& option : subcommand.options) {
    if (option.name == name && !option.type.empty()) return &option;
  }
  return nullptr;
}

Completion ofSubcommand(const SubcommandFacts& subcommand, const Words& typed) {
  const std::string& current = typed.back();
  if (const OptionFacts* option = optionNamed(subcommand, typed[typed.size() - 2])) {
    return valueOf(*option, current, typed);
  }
  const std::size_t equals = startsWith(current, "--") ? current.find('=') : std::string::npos;
  if (equals == std::string::npos) return optionNames(subcommand, typed);
  const OptionFacts* option = optionNamed(subcommand, current.substr(0, equals));
  if (option == nullptr) return {};
  Completion completion = valueOf(*option, current.substr(equals + 1), typed);
  for (std::string& word : completion.words)
    word.insert(0, current, 0, equals + 1);
  return completion;
}

Completion ofCommand(const std::vector<SubcommandFacts>& subcommands, const std::string& typed) {
  Words words;
  for (const SubcommandFacts& subcommand : subcommands)
    words.push_back(subcommand.name);
  for (const OptionFacts& option : commandOptionFacts())
    words.push_back(option.name);
  Completion completion;
  completion.words = beginning(words, typed);
  return completion;
}

}  // namespace

Completion completionOf(const Words& typed) {
  const std::vector<SubcommandFacts> subcommands = subcommandFacts();
  if (typed.size() <= 1) return ofCommand(subcommands, typed.empty() ? "" : typed.front());
  for (const SubcommandFacts& subcommand : subcommands) {
    if (subcommand.name == typed.front()) return ofSubcommand(subcommand, typed);
  }
  return {};
}

std::string completionText(const Completion& completion) {
  std::string text;
  if (!completion.extensions.empty()) {
    text += "+files";
    for (const std::string& extension : completion.extensions)
      text += " " + extension;
    text += "\n";
  }
  if (completion.folders) text += "+folders\n";
  if (completion.open) text += "+open\n";
  for (const std::string& word : completion.words)
    text += word + "\n";
  return text;
}

bool isCompletion(int count, const char* const* texts) {
  return count > 1 && std::string(texts[1]) == "complete";
}

int runCompletion(int count, const char* const* texts) {
  try {
    const Words typed(texts + 2, texts + count);
    std::fputs(completionText(completionOf(typed)).c_str(), stdout);
  } catch (const std::exception&) {
    return 0;
  }
  return 0;
}

}  // namespace drevintool
