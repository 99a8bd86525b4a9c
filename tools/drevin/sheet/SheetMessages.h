#pragma once

/// What is said of the pictures of a sheet, each thing once.

#include <cstddef>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "sheet/SheetPlan.h"

namespace drevintool {

/// Keeps warnings and notes until all pictures are made: most are about all of them. May be told
/// from several threads.
class SheetMessages {
 public:
  void addWarning(std::size_t picture, const std::string& text);
  void addNote(std::size_t picture, const std::string& text);
  /// Of a file that this picture does not use: it is a warning only if no picture does.
  void addUnused(std::size_t picture, const std::string& text);

  /// Prints them in the order of the first pictures that they are about. What is not about all
  /// pictures of the plan begins with the name of the first one.
  void print(const SheetPlan& plan) const;

 private:
  enum class Kind { Warning, Note, Unused };
  struct Message {
    Kind kind = Kind::Note;
    std::string text;
    std::set<std::size_t> pictures;  // each once, though it may be made twice
  };

  void add(Kind kind, std::size_t picture, const std::string& text);

  std::mutex mutex_;
  std::vector<Message> messages_;
};

}  // namespace drevintool
