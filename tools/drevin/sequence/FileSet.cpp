#include "sequence/FileSet.h"

#include <sys/stat.h>

#include <optional>
#include <system_error>

namespace drevintool {
namespace {

using Node = std::pair<unsigned long long, unsigned long long>;

std::optional<Node> nodeOf(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return std::nullopt;
  return Node(status.st_dev, status.st_ino);
}

}  // namespace

std::string FileSet::place(const std::string& file) {
  const std::filesystem::path path(file);
  const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
  const auto [known, isNew] = folders_.try_emplace(folder);
  if (isNew) {
    std::error_code error;
    const std::filesystem::path whole =
        std::filesystem::weakly_canonical(std::filesystem::absolute(folder, error), error);
    known->second = error ? std::filesystem::path(folder) : whole;
  }
  const std::filesystem::path whole = known->second / path.filename();
  std::error_code error;
  if (!std::filesystem::is_symlink(whole, error)) return whole.string();
  const std::filesystem::path target = std::filesystem::weakly_canonical(whole, error);
  return (error ? whole : target).string();
}

void FileSet::add(const std::string& file) {
  places_.insert(place(file));
  if (const std::optional<Node> node = nodeOf(file)) nodes_.insert(*node);
}

bool FileSet::has(const std::string& file) {
  if (places_.count(place(file)) != 0) return true;
  if (nodes_.empty()) return false;
  const std::optional<Node> node = nodeOf(file);
  return node && nodes_.count(*node) != 0;
}

}  // namespace drevintool
