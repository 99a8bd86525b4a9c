#include "picture/NearestFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>
#include <vector>

#include "terminal/NearestName.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

namespace fs = std::filesystem;

bool isDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return text;
}

// Without digits and what stands around them.
std::string sequenceName(std::string text) {
  const auto dropped = [](char c) { return isDigit(c) || c == '.' || c == '_' || c == '-'; };
  text.erase(std::remove_if(text.begin(), text.end(), dropped), text.end());
  return text;
}

bool isOtherFrame(const std::string& wanted, const std::string& file) {
  const bool numbered = std::any_of(wanted.begin(), wanted.end(), isDigit);
  return numbered && sequenceName(wanted) == sequenceName(file);
}

// Frames of a sequence are many, and each that is missing looks here.
std::vector<fs::path> filesIn(const fs::path& folder) {
  constexpr std::size_t kMost = 10000;
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path& file = entry->path();
    if (file.filename().string().front() != '.') files.push_back(file.filename());
    if (files.size() == kMost) break;
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool comesNear(const fs::path& wanted, const fs::path& file) {
  if (isOtherFrame(wanted.string(), file.string())) return false;
  const std::string wantedStem = wanted.stem().string();
  const std::string stem = file.stem().string();
  if (lowered(stem) == lowered(wantedStem)) return true;
  const bool sameKind = lowered(wanted.extension().string()) == lowered(file.extension().string());
  return sameKind && !nearestName(wantedStem, {stem}).empty();
}

}  // namespace

std::string nearestFileHint(const std::string& path) {
  const fs::path wanted(path);
  std::error_code error;
  if (wanted.filename().empty() || fs::exists(fs::symlink_status(wanted, error))) return {};
  const fs::path folder = wanted.has_parent_path() ? wanted.parent_path() : fs::path(".");
  std::vector<std::string> names;
  for (const fs::path& file : filesIn(folder)) {
    if (comesNear(wanted.filename(), file)) names.push_back(file.string());
  }
  const std::string nearest = nearestName(wanted.filename().string(), names);
  if (nearest.empty()) return {};
  return "; did you mean " + oneLine((wanted.parent_path() / nearest).string()) + "?";
}

}  // namespace drevintool
