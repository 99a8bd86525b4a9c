#include "EmbeddedHost/Plugin.h"

#include <dlfcn.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <vector>

#include "Classes.h"
#include "PluginFile.h"

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
  static std::mutex oneAtATime;
  const std::lock_guard<std::mutex> lock(oneAtATime);
  std::error_code failed;
  // One name for each file, however it is called; a name without a slash would be searched for in
  // the system's library folders.
  const std::string path = std::filesystem::canonical(file, failed).string();
  if (failed) throw PluginError(file + ": no such file");
  if (isCutOff(path)) throw PluginError(file + ": is damaged: the file ends too early");
  const std::vector<DD::Image::Description*> before = Classes::instance().all();
  dlerror();
  // Never closed: descriptions and operators live in it.
  if (dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
    throw PluginError(file + ": not a plug-in for this program: " + loaderMessage());
  }
  const std::vector<DD::Image::Description*> after = Classes::instance().all();
  for (DD::Image::Description* description : after) {
    const bool isNew = std::find(before.begin(), before.end(), description) == before.end();
    if (isNew) description->plugin = keptName(path);
  }
  for (DD::Image::Description* description : after) {
    if (description->plugin != nullptr && path == description->plugin &&
        className == description->name) {
      return *static_cast<DD::Image::Op::Description*>(description);
    }
  }
  throw PluginError(file + ": has no class " + className);
}

}  // namespace embedded
