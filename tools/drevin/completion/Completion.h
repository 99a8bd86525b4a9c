#pragma once

/// What a shell may propose for the word that is being typed.

#include <string>
#include <vector>

namespace drevintool {

struct Completion {
  std::vector<std::string> words;       ///< whole words that begin as the typed one
  std::vector<std::string> extensions;  ///< and files with these (".exr"); "" for files of any name
  bool folders = false;                 ///< and folders, also where there are no extensions
  bool open = false;                    ///< more is to be typed behind a word: no blank
};

/// `typed` are the words behind the command's name up to the one that is being typed, which is the
/// last and may be empty. The node is loaded only where a control's name or value is wanted; where
/// it cannot be, nothing is proposed.
Completion completionOf(const std::vector<std::string>& typed);

/// Lines for the shell: "+files .exr .png", "+folders", "+open", then a line for each word.
std::string completionText(const Completion& completion);

/// Whether the command line is the shell's question: "complete" and then `typed`.
bool isCompletion(int count, const char* const* texts);

/// Answers it on standard output. Never fails: a shell has no use for messages.
int runCompletion(int count, const char* const* texts);

}  // namespace drevintool
