#pragma once

/// Files by what they are, not by how they are named.

#include <filesystem>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace drevintool {

/// Quick for many files of few folders; files need not be there.
class FileSet {
 public:
  void add(const std::string& file);
  /// Whether one of the files is this one, by any of its names or links.
  bool has(const std::string& file);
  /// Where the file would be written: the folder without links and dots, and the name in it, or
  /// what that is a link to.
  std::string place(const std::string& file);

 private:
  std::unordered_map<std::string, std::filesystem::path> folders_;
  std::unordered_set<std::string> places_;
  std::set<std::pair<unsigned long long, unsigned long long>> nodes_;  ///< of those that are there
};

}  // namespace drevintool
