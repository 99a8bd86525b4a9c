#include "RealPictures.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace drevintool::testing {

namespace fs = std::filesystem;

std::string pictureFolder() {
  const char* variable = std::getenv("DREVIN_TEST_DATA");
  const std::string folder = variable == nullptr ? DREVIN_TEST_DATA_FOLDER : variable;
  std::error_code error;
  return fs::is_directory(fs::path(folder) / "flat", error) ? folder : std::string();
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(fs::path(pictureFolder()) / folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace drevintool::testing
