#include "doctor/DoctorCommand.h"

#include <OpenEXR/OpenEXRConfig.h>
#include <fmt/format.h>
#include <png.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>

#include "EmbeddedHost/HostLibrary.h"
#include "EmbeddedHost/ProcessorQuota.h"
#include "EmbeddedHost/Render.h"
#include "controls/NodeVersion.h"
#include "controls/PluginSearch.h"
#include "controls/PluginSimd.h"
#include "picture/MemoryBudget.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/SizeText.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

// What the class registers with is a date, the same in every build, and the interface's version.
Json interfaceJson(const DD::Image::Op::Description& description) {
  const std::string registered = description.compiled == nullptr ? "" : description.compiled;
  const std::string before = " for ";
  const std::size_t at = registered.rfind(before);
  return at == std::string::npos ? Json() : Json(registered.substr(at + before.size()));
}

Json pluginJson(const DD::Image::Op::Description& description) {
  Json json;
  json["file"] = description.plugin == nullptr ? "" : description.plugin;
  json["class"] = description.name;
  json["version"] = nodeVersion(Node(description));
  json["interface"] = interfaceJson(description);
  json["simd"] = simdName(description);
  return json;
}

Json hostJson() {
  return {{"name", "embedded"},
          {"interface", embedded::interfaceVersion()},
          {"file", embedded::libraryFile()}};
}

Json processorsJson() {
  const std::optional<unsigned> quota = embedded::quotaProcessors();
  return {{"machine", std::thread::hardware_concurrency()},
          {"usable", embedded::usableProcessors()},
          {"cgroup", quota ? Json(*quota) : Json()}};
}

Json limitJson(const std::optional<std::uint64_t>& bytes) {
  return bytes ? Json(*bytes) : Json();
}

Json memoryJson() {
  const MemoryLimits limits = memoryLimits();
  Json json;
  json["pictures"] = memoryBudget().bytes;
  json["free"] = limitJson(limits.free);
  json["cgroup"] = limitJson(limits.cgroup);
  json["addressSpace"] = limitJson(limits.addressSpace);
  return json;
}

Json findings() {
  Json json;
  json["command"] = DREVIN_VERSION;
  json["host"] = hostJson();
  json["openexr"] = OPENEXR_VERSION_STRING;
  json["libpng"] = png_get_libpng_ver(nullptr);
  json["processors"] = processorsJson();
  json["memory"] = memoryJson();
  return json;
}

std::string sizeOf(const Json& bytes) {
  return bytes.is_null() ? "no limit" : sizeText(bytes.get<std::uint64_t>());
}

std::string pluginText(const Json& plugin) {
  const std::string interface =
      plugin["interface"].is_null()
          ? std::string()
          : ", for hosts of version " + plugin["interface"].get<std::string>();
  return fmt::format("plug-in       {}\n  class       {} {}{}\n  vectors     {}\n",
                     plugin["file"].get<std::string>(), plugin["class"].get<std::string>(),
                     plugin["version"].get<std::string>(), interface,
                     plugin["simd"].get<std::string>());
}

std::string processorsText(const Json& processors) {
  const Json& quota = processors["cgroup"];
  return fmt::format("processors    {} may be used, of {}\n  cgroup      {}\n",
                     processors["usable"].get<unsigned>(), processors["machine"].get<unsigned>(),
                     quota.is_null() ? "no limit" : std::to_string(quota.get<unsigned>()));
}

std::string memoryText(const Json& memory) {
  return fmt::format(
      "memory        {} for pictures\n  free        {}\n  cgroup      {}\n  ulimit -v   {}\n",
      sizeOf(memory["pictures"]), sizeOf(memory["free"]), sizeOf(memory["cgroup"]),
      sizeOf(memory["addressSpace"]));
}

// Without a plug-in the error says why there is none.
std::string textOf(const Json& json) {
  const Json& host = json["host"];
  std::string text = fmt::format("command       {}\n", json["command"].get<std::string>());
  if (!json["plugin"].contains("error")) text += pluginText(json["plugin"]);
  text += fmt::format("host          {}, version {}\n  library     {}\n",
                      host["name"].get<std::string>(), host["interface"].get<std::string>(),
                      host["file"].get<std::string>());
  text += fmt::format("OpenEXR       {}\n", json["openexr"].get<std::string>());
  text += fmt::format("libpng        {}\n", json["libpng"].get<std::string>());
  return text + processorsText(json["processors"]) + memoryText(json["memory"]);
}

}  // namespace

int runDoctor(const DoctorArguments& arguments) {
  Json json = findings();
  std::optional<ToolError> missing;
  try {
    const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
    json["plugin"] = pluginJson(description);
    warnOfSimd(description);
  } catch (const ToolError& error) {
    missing = error;
    json["plugin"] = {{"error", error.what()}};
  }
  const auto replace = Json::error_handler_t::replace;
  const std::string text = arguments.json ? json.dump(2, ' ', false, replace) + "\n" : textOf(json);
  std::fputs(text.c_str(), stdout);
  if (!missing) return static_cast<int>(ExitCode::Done);
  printError(missing->what());
  return static_cast<int>(missing->code());
}

}  // namespace drevintool
