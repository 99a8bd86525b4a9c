#include "render/Report.h"

#include <array>
#include <cstdio>

#include "controls/CameraKeys.h"
#include "controls/ControlJson.h"
#include "controls/NodeVersion.h"
#include "picture/AtomicFile.h"
#include "picture/MemoryBudget.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

Json boxJson(const DD::Image::Box& box) {
  return Json::array({box.x(), box.y(), box.r(), box.t()});
}

Json nodeJson(const Node& node, const std::string& hash) {
  const DD::Image::Op::Description& description = node.description();
  Json json;
  json["class"] = description.name;
  json["version"] = nodeVersion(node);
  json["build"] = description.compiled == nullptr ? "" : description.compiled;
  json["hash"] = hash;
  return json;
}

Json formatJson(const Picture& picture) {
  Json json;
  json["width"] = picture.width;
  json["height"] = picture.height;
  json["pixelAspect"] = picture.pixelAspect;
  return json;
}

Json controlsJson(const Node& node) {
  Json controls = Json::object();
  for (const auto& knob : node.knobs()) {
    if (knob->name().empty()) continue;
    controls[knob->name()] = {{"value", valueJson(*knob)}, {"enabled", knob->isEnabled()}};
  }
  return controls;
}

Json cameraJson(const std::map<std::string, CameraFinding>& camera) {
  Json json = Json::object();
  for (const CameraKey& key : cameraKeys()) {
    const auto found = camera.find(key.name);
    if (found == camera.end()) continue;
    json[key.name] = {
        {"value", found->second.value}, {"unit", key.unit}, {"from", found->second.from}};
  }
  return json;
}

Json requestJson(const embedded::InputRequest& request) {
  Json channels = Json::array();
  for (const DD::Image::Channel z : request.channels)
    channels.push_back(DD::Image::getName(z));
  Json json;
  json["box"] = boxJson(request.box);
  json["channels"] = channels;
  return json;
}

// Null for what there is not.
Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

void addDeepFacts(const DeepExrSource& deep, embedded::DeepOrder order, Json& entry) {
  const DeepSampleCounts counts = deep.counts();
  entry["part"] = textOrNull(deep.partName());
  entry["deepOrder"] = order == embedded::DeepOrder::FarFirst ? "far-first" : "near-first";
  entry["samples"] = {
      {"read", counts.samples}, {"thick", counts.thick}, {"mostPerPixel", counts.mostPerPixel}};
  entry["bandReads"] = deep.bandReads();
}

// Every picture that was given; null for "asked" if the node asked nothing of it.
Json inputsJson(const RenderArguments& arguments, const InputPictures& pictures,
                const embedded::RenderResult& result) {
  constexpr std::array<const char*, 5> kNames = {"Input", "Kernel", "Camera", "Deep Input",
                                                 "Mattes"};
  Json inputs = Json::object();
  for (int input = 0; input < static_cast<int>(kNames.size()); ++input) {
    const std::string file = pictures.fileOf(input);
    const auto asked = result.requests.find(input);
    if (file.empty() && asked == result.requests.end()) continue;
    Json entry;
    entry["file"] = textOrNull(file);
    entry["asked"] = asked == result.requests.end() ? Json() : requestJson(asked->second);
    if (input == kDeepInput) addDeepFacts(*pictures.deep(), arguments.deepOrder, entry);
    inputs[kNames[static_cast<std::size_t>(input)]] = entry;
  }
  return inputs;
}

Json warningsJson(const std::vector<std::string>& ofCommand, const embedded::RenderResult& result) {
  Json warnings = ofCommand;
  for (const embedded::Message& message : result.messages) {
    if (message.severity == embedded::Severity::Warning) warnings.push_back(message.text);
  }
  return warnings;
}

// The stages that the node announces before its rows have names of their own; what makes the
// picture, wherever it is done, is the defocus.
Json secondsJson(const embedded::RenderResult& result, const CommandTimes& times) {
  double aperture = 0.0;
  double estimate = 0.0;
  double kernels = 0.0;
  double defocus = 0.0;
  for (const embedded::Stage& stage : result.stages) {
    double& sum = stage.name == "Aperture"        ? aperture
                  : stage.name == "Size estimate" ? estimate
                  : stage.name == "Kernels"       ? kernels
                                                  : defocus;
    sum += stage.seconds;
  }
  return {{"read", times.read},  {"aperture", aperture}, {"estimate", estimate},
          {"kernels", kernels},  {"defocus", defocus},   {"write", times.write},
          {"total", times.total}};
}

}  // namespace

Json renderReport(const RenderArguments& arguments, const Node& node, const InputPictures& pictures,
                  const embedded::RenderResult& result, const CommandRecord& record) {
  Json report;
  report["command"] = "drevin " DREVIN_VERSION;
  report["node"] = nodeJson(node, result.hash);
  report["output"] = arguments.output;
  report["format"] = formatJson(pictures.image());
  report["box"] = boxJson(result.image.box);
  report["controls"] = controlsJson(node);
  if (!record.camera.empty()) report["camera"] = cameraJson(record.camera);
  report["inputs"] = inputsJson(arguments, pictures, result);
  if (!record.mended.empty()) report["mended"] = record.mended;
  report["warnings"] = warningsJson(record.warnings, result);
  report["threads"] = result.threads;
  report["seconds"] = secondsJson(result, record.times);
  report["peakMemoryBytes"] = peakMemoryBytes();
  return report;
}

Json skippedReport(const RenderArguments& arguments) {
  Json report;
  report["command"] = "drevin " DREVIN_VERSION;
  report["output"] = arguments.output;
  report["skipped"] = true;
  return report;
}

void writeReport(const Json& report, const std::string& path) {
  const std::string text = report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  if (path == kStandardOutput) {
    std::fputs(text.c_str(), stdout);
    return;
  }
  AtomicFile file(path);
  file.write(text.data(), text.size());
  file.commit();
}

}  // namespace drevintool
