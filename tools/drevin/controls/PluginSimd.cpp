#include "controls/PluginSimd.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "terminal/Messages.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr const char* kVariable = "DREVIN_SIMD";

// What the plug-in's function of that name says; plug-ins from before there was one do not tell.
std::string told(const DD::Image::Op::Description& description, const char* function) {
  if (description.plugin == nullptr) return {};
  void* library = dlopen(description.plugin, RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) return {};
  using Text = const char* (*)();
  const auto text = reinterpret_cast<Text>(dlsym(library, function));
  std::string words = text == nullptr ? "" : text();
  dlclose(library);
  return words;
}

std::vector<std::string> knownNames(const DD::Image::Op::Description& description) {
  std::istringstream words(told(description, "drevinSimdNames"));
  std::vector<std::string> names;
  for (std::string name; words >> name;)
    names.push_back(name);
  return names;
}

std::string listed(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < names.size(); ++i)
    list += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
  return list;
}

}  // namespace

std::string simdName(const DD::Image::Op::Description& description) {
  const std::string name = told(description, "drevinSimdName");
  return name.empty() ? "unknown" : name;
}

std::string simdWarning(const DD::Image::Op::Description& description) {
  const char* variable = std::getenv(kVariable);
  const std::string wanted = variable == nullptr ? "" : variable;
  const std::vector<std::string> names = knownNames(description);
  const std::string used = simdName(description);
  if (wanted.empty() || names.empty() || wanted == used) return {};
  const std::string start = std::string(kVariable) + "=" + wanted + ": ";
  if (std::find(names.begin(), names.end(), wanted) != names.end()) {
    return oneLine(start + "this processor has no such vectors; " + used + " is used");
  }
  return oneLine(start + "is none of " + listed(names) + "; " + used + " is used");
}

void warnOfSimd(const DD::Image::Op::Description& description) {
  const std::string warning = simdWarning(description);
  if (!warning.empty()) printWarning(warning);
}

}  // namespace drevintool
