#include "controls/PluginSearch.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "EmbeddedHost/Plugin.h"
#include "picture/NearestFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

namespace fs = std::filesystem;

std::string fileName() {
  return std::string(kClassName) + ".so";
}

std::string inFolder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error) ? (fs::path(path) / fileName()).string() : path;
}

std::vector<fs::path> searchedFolders() {
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  if (error) return {};
  return {folder, folder / ".." / DREVIN_LIBRARY_FOLDER, folder / ".." / "lib"};
}

std::string foundFile() {
  std::string places;
  for (const fs::path& folder : searchedFolders()) {
    std::error_code error;
    const fs::path file = (folder / fileName()).lexically_normal();
    if (fs::exists(file, error)) return file.string();
    places += (places.empty() ? "" : ", ") + file.string();
  }
  throw ToolError(ExitCode::PluginNotLoaded, oneLine("no plug-in found (" + places +
                                                     "); name it with --plugin or DREVIN_PLUGIN"));
}

const char* variable() {
  const char* value = std::getenv("DREVIN_PLUGIN");
  return value != nullptr && *value != '\0' ? value : nullptr;
}

std::string pluginFile(const std::string& option) {
  if (!option.empty()) return inFolder(option);
  return variable() != nullptr ? inFolder(variable()) : foundFile();
}

}  // namespace

const DD::Image::Op::Description& loadNodeClass(const std::string& option) {
  const std::string file = pluginFile(option);
  try {
    return embedded::loadPlugin(file, kClassName);
  } catch (const embedded::PluginError& error) {
    const bool fromVariable = option.empty() && variable() != nullptr;
    const std::string line = error.what() + nearestFileHint(file);
    throw ToolError(ExitCode::PluginNotLoaded,
                    oneLine(fromVariable ? "DREVIN_PLUGIN: " + line +
                                               "; set it to the file of the plug-in, or unset it"
                                         : line));
  }
}

}  // namespace drevintool
