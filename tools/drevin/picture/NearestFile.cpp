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

std::string digitsOf(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return !isDigit(c); }),
             text.end());
  return text;
}

// Names of sequences are near by their letters: those of one digit and those of many.
bool sequencesAreNear(const fs::path& wanted, const fs::path& file) {
  const std::string name = sequenceName(wanted.stem().string());
  const std::string other = sequenceName(file.stem().string());
  return name == other || !nearestName(name, {other}).empty();
}

bool comesNear(const fs::path& wanted, const fs::path& file) {
  const std::string number = digitsOf(wanted.stem().string());
  const bool numbered = !number.empty();
  if (numbered && (number != digitsOf(file.stem().string()) || !sequencesAreNear(wanted, file)))
    return false;
  const std::string wantedStem = wanted.stem().string();
  const std::string stem = file.stem().string();
  if (lowered(stem) == lowered(wantedStem)) return true;
  const bool sameKind = lowered(wanted.extension().string()) == lowered(file.extension().string());
  return sameKind && !nearestName(wantedStem, {stem}).empty();
}

// The name with signs in the place of its last number: "a.0007.exr" is "a.####.exr". Empty without
// a number.
std::string patternOf(const fs::path& file) {
  std::string stem = file.stem().string();
  const auto last = std::find_if(stem.rbegin(), stem.rend(), isDigit);
  const auto first = std::find_if_not(last, stem.rend(), isDigit);
  if (last == stem.rend()) return {};
  std::fill(first.base(), last.base(), '#');
  return stem + file.extension().string();
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

std::string hintAt(const fs::path& wanted, const std::string& name) {
  if (name.empty()) return {};
  return "; did you mean " + oneLine((wanted.parent_path() / name).string()) + "?";
}

}  // namespace

std::string nearestFileHint(const std::string& path) {
  const fs::path wanted(path);
  std::error_code error;
  if (wanted.filename().empty() || fs::exists(fs::symlink_status(wanted, error))) return {};
  std::vector<std::string> names;
  for (const fs::path& file : filesIn(folderOf(wanted))) {
    if (isOtherFrame(wanted.filename().string(), file.string())) return {};
    if (comesNear(wanted.filename(), file)) names.push_back(file.string());
  }
  return hintAt(wanted, nearestName(wanted.filename().string(), names));
}

std::string nearestSequenceHint(const std::string& path) {
  const fs::path wanted(path);
  const std::string pattern = patternOf(wanted.filename());
  std::vector<std::string> patterns;
  for (const fs::path& file : filesIn(folderOf(wanted))) {
    const std::string other = patternOf(file);
    const bool sameKind =
        lowered(wanted.extension().string()) == lowered(file.extension().string());
    if (other == pattern) return {};
    if (!other.empty() && sameKind && sequencesAreNear(wanted.filename(), file))
      patterns.push_back(other);
  }
  return hintAt(wanted, nearestName(pattern, patterns));
}

}  // namespace drevintool
