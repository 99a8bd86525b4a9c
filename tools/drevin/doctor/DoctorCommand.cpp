#include "doctor/DoctorCommand.h"

#include <OpenEXR/OpenEXRConfig.h>
#include <dlfcn.h>
#include <fmt/format.h>
#include <png.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>

#include "EmbeddedHost/Render.h"
#include "controls/PluginSearch.h"
#include "picture/MemoryBudget.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/SizeText.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

// Plug-ins from before there was such a function do not tell.
std::string simdName(const char* plugin) {
  void* library = plugin == nullptr ? nullptr : dlopen(plugin, RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) return "unknown";
  using Name = const char* (*)();
  const auto name = reinterpret_cast<Name>(dlsym(library, "drevinSimdName"));
  const std::string text = name == nullptr ? "unknown" : name();
  dlclose(library);
  return text;
}

Json pluginJson(const DD::Image::Op::Description& description) {
  Json json;
  json["file"] = description.plugin == nullptr ? "" : description.plugin;
  json["class"] = description.name;
  json["build"] = description.compiled == nullptr ? "" : description.compiled;
  json["simd"] = simdName(description.plugin);
  return json;
}

Json limitJson(const std::optional<std::uint64_t>& bytes) {
  return bytes ? Json(*bytes) : Json();
}

Json memoryJson() {
  const MemoryLimits limits = memoryLimits();
  Json json;
  json["pictures"] = memoryBudget();
  json["free"] = limitJson(limits.free);
  json["cgroup"] = limitJson(limits.cgroup);
  json["addressSpace"] = limitJson(limits.addressSpace);
  return json;
}

Json findings() {
  Json json;
  json["command"] = DREVIN_VERSION;
  json["openexr"] = OPENEXR_VERSION_STRING;
  json["libpng"] = png_get_libpng_ver(nullptr);
  json["processors"] = {{"machine", std::thread::hardware_concurrency()},
                        {"usable", embedded::usableProcessors()}};
  json["memory"] = memoryJson();
  return json;
}

std::string sizeOf(const Json& bytes) {
  return bytes.is_null() ? "no limit" : sizeText(bytes.get<std::uint64_t>());
}

std::string textOf(const Json& json) {
  std::string text = fmt::format("command       {}\n", json["command"].get<std::string>());
  if (json.contains("plugin")) {
    const Json& plugin = json["plugin"];
    text += fmt::format("plug-in       {}\n", plugin["file"].get<std::string>());
    text += fmt::format("  class       {}, built {}\n", plugin["class"].get<std::string>(),
                        plugin["build"].get<std::string>());
    text += fmt::format("  vectors     {}\n", plugin["simd"].get<std::string>());
  }
  text += fmt::format("OpenEXR       {}\n", json["openexr"].get<std::string>());
  text += fmt::format("libpng        {}\n", json["libpng"].get<std::string>());
  const Json& processors = json["processors"];
  text += fmt::format("processors    {} may be used, of {}\n", processors["usable"].get<unsigned>(),
                      processors["machine"].get<unsigned>());
  const Json& memory = json["memory"];
  text += fmt::format("memory        {} for pictures\n", sizeOf(memory["pictures"]));
  text += fmt::format("  free        {}\n", sizeOf(memory["free"]));
  text += fmt::format("  cgroup      {}\n", sizeOf(memory["cgroup"]));
  text += fmt::format("  ulimit -v   {}\n", sizeOf(memory["addressSpace"]));
  return text;
}

}  // namespace

int runDoctor(const DoctorArguments& arguments) {
  Json json = findings();
  std::optional<ToolError> missing;
  try {
    json["plugin"] = pluginJson(loadNodeClass(arguments.plugin));
  } catch (const ToolError& error) {
    missing = error;
  }
  const auto replace = Json::error_handler_t::replace;
  const std::string text = arguments.json ? json.dump(2, ' ', false, replace) + "\n" : textOf(json);
  std::fputs(text.c_str(), stdout);
  if (!missing) return static_cast<int>(ExitCode::Done);
  printError(missing->what());
  return static_cast<int>(missing->code());
}

}  // namespace drevintool
