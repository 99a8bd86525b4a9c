#include "ScratchFolder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace drevintool::testing {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  std::string pattern = (fs::temp_directory_path() / "drevin-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
  path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  fs::permissions(path_, fs::perms::owner_all, error);
  fs::remove_all(path_, error);
}

std::string ScratchFolder::file(const std::string& name) const {
  return (fs::path(path_) / name).string();
}

std::vector<std::string> ScratchFolder::entries() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string bytesOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace drevintool::testing
