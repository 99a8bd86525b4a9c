#include "EmbeddedHost/Plugin.h"

#include <dlfcn.h>

#include <deque>
#include <filesystem>
#include <system_error>

#include "Classes.h"

namespace embedded {

namespace {

std::string loaderMessage() {
  const char* text = dlerror();
  return text == nullptr ? "unknown reason" : text;
}

/// File names that descriptions point to for the life of the process.
const char* keptName(const std::string& file) {
  static auto* names = new std::deque<std::string>;
  names->push_back(file);
  return names->back().c_str();
}

}  // namespace

const DD::Image::Op::Description& loadPlugin(const std::string& file,
                                             const std::string& className) {
  std::error_code failed;
  if (!std::filesystem::exists(file, failed)) throw PluginError(file + ": no such file");
  // A path without a slash would be searched for in the system's library folders.
  const std::string path = std::filesystem::absolute(file, failed).string();
  dlerror();
  // Never closed: descriptions and operators live in it.
  if (dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
    throw PluginError(file + ": not a plug-in for this program: " + loaderMessage());
  }
  DD::Image::Description* description = Classes::instance().find(className.c_str());
  if (description == nullptr) throw PluginError(file + ": has no class " + className);
  if (description->plugin == nullptr) description->plugin = keptName(path);
  return *static_cast<DD::Image::Op::Description*>(description);
}

}  // namespace embedded
