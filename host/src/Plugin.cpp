#include "EmbeddedHost/Plugin.h"

#include <dlfcn.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <vector>

#include "Classes.h"
#include "DDImage/ddImageVersionNumbers.h"
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

/// "12.0" of a build string such as "Oct  4 2019 for 12.0v3"; empty if it names no version.
std::string versionOf(const char* build) {
  const std::string text = build == nullptr ? "" : build;
  const std::string before = " for ";
  const std::size_t at = text.rfind(before);
  if (at == std::string::npos) return {};
  const char* digits = "0123456789";
  const std::string version = text.substr(at + before.size());
  const std::size_t point = version.find_first_not_of(digits);
  if (point == 0 || point == std::string::npos || version[point] != '.') return {};
  const std::size_t end = version.find_first_not_of(digits, point + 1);
  const bool minor = point + 1 < version.size() && end != point + 1;
  return minor ? version.substr(0, end) : std::string();
}

/// What is laid out otherwise must not be called.
void checkVersion(const std::string& file, const DD::Image::Description& description) {
  const std::string wanted =
      std::to_string(kDDImageVersionMajorNum) + "." + std::to_string(kDDImageVersionMinorNum);
  const std::string found = versionOf(description.compiled);
  if (found == wanted) return;
  throw PluginError(
      file + ": was built for " +
      (found.empty() ? "no version of hosts that it names" : "hosts of version " + found) +
      ", and this host has version " + wanted + "; use a build for that one");
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
      checkVersion(file, *description);
      return *static_cast<DD::Image::Op::Description*>(description);
    }
  }
  throw PluginError(file + ": has no class " + className);
}

}  // namespace embedded
