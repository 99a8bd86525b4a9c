#include "inspect/FileInspection.h"

#include <algorithm>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "controls/CameraKeys.h"
#include "controls/CameraOption.h"
#include "deep/DeepCompanion.h"
#include "deep/DeepExrSource.h"
#include "depth/DepthChoice.h"
#include "depth/DepthCodes.h"
#include "inspect/CostPrediction.h"
#include "inspect/DeepInspection.h"
#include "inspect/DepthInspection.h"
#include "inspect/ValueRange.h"
#include "picture/ChannelNames.h"
#include "picture/ExrCompression.h"
#include "picture/ExrHeaderScan.h"
#include "picture/ExrReader.h"
#include "picture/SampleTypeName.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Knob;
using Json = nlohmann::ordered_json;

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json windowJson(const ExrWindow& window) {
  return Json::array({window.minX, window.minY, window.maxX, window.maxY});
}

Json partJson(const ExrPartFacts& part) {
  Json json;
  json["name"] = textOrNull(part.name);
  json["view"] = textOrNull(part.view);
  json["type"] = std::string(part.deep ? "deep " : "") + (part.tiled ? "tiles" : "scanlines");
  json["compression"] = compressionName(part.compression);
  json["dataWindow"] = windowJson(part.dataWindow);
  json["displayWindow"] = windowJson(part.displayWindow);
  json["channels"] = Json::array();
  for (const ExrChannelFacts& channel : part.channels)
    json["channels"].push_back({{"name", channel.name}, {"type", sampleTypeName(channel.type)}});
  return json;
}

std::string typeOf(const PictureChannel& channel) {
  if (channel.isUint()) return "uint";
  return std::holds_alternative<HalfSamples>(channel.samples) ? "half" : "float";
}

std::string layerOf(const std::string& hostName) {
  return hostName.substr(0, hostName.rfind('.'));
}

// The view of each channel of the picture, whose channels come part by part.
std::vector<std::string> viewsOf(const Picture& picture, const ExrFacts& facts) {
  std::vector<std::string> views;
  for (const ExrPartFacts& part : facts.parts) {
    if (!part.deep) views.insert(views.end(), part.channels.size(), part.view);
  }
  views.resize(picture.channels.size());
  return views;
}

const std::string& viewOf(const PictureChannel& channel, const Picture& picture,
                          const std::vector<std::string>& views) {
  return views[static_cast<std::size_t>(&channel - picture.channels.data())];
}

Json layersJson(const Picture& picture) {
  Json layers = Json::array();
  for (const PictureChannel& channel : picture.channels) {
    throwIfInterrupted();
    Json entry = {
        {"name", channel.fileName}, {"hostName", channel.hostName}, {"type", typeOf(channel)}};
    entry.update(rangeJson(rangeOf(channel.samples, picture.box, windowOf(picture, channel))));
    const std::string layer = layerOf(channel.hostName);
    const auto same = [&](const Json& l) { return l["layer"] == layer; };
    auto place = std::find_if(layers.begin(), layers.end(), same);
    if (place == layers.end()) {
      layers.push_back({{"layer", layer}, {"channels", Json::array()}});
      place = std::prev(layers.end());
    }
    (*place)["channels"].push_back(entry);
  }
  return layers;
}

Json depthOf(const Picture& picture, const std::vector<std::string>& views, const Node* node) {
  const PictureChannel* chosen =
      node == nullptr ? usualDepth(picture) : chosenDepth(picture, *node);
  Json json;
  json["channel"] = chosen == nullptr ? Json() : Json(chosen->fileName);
  json["others"] = Json::array();
  for (const PictureChannel* other : possibleDepths(picture)) {
    if (other != chosen) json["others"].push_back(other->fileName);
  }
  if (chosen == nullptr) return json;
  const PictureChannel* red = findChannel(picture, "rgba.red");
  json["view"] = textOrNull(viewOf(*chosen, picture, views));
  json["viewOfColours"] = red == nullptr ? json["view"] : textOrNull(viewOf(*red, picture, views));
  json.update(
      inspectDepth(picture, *chosen, node == nullptr ? DepthStyle::Real : depthStyleOf(*node)));
  return json;
}

Json findingJson(const CameraFinding& finding, const std::string& unit) {
  return {{"value", finding.value}, {"unit", unit}, {"from", finding.from}};
}

void addCamera(const Node* node, const Picture& picture, Json& json) {
  const std::map<std::string, CameraFinding> findings = cameraOfHeader(node, picture);
  Json camera;
  for (const auto& [name, finding] : findings)
    camera[name] = findingJson(finding, findCameraKey(name)->unit);
  const std::optional<CameraFinding> view = fieldOfViewOf(picture);
  if (view) camera["fieldOfView"] = findingJson(*view, "degrees");
  json["camera"] = camera;
  json["cameraLacks"] = missingCameraKeys(findings, picture);
}

void addFormat(const Picture& picture, const Node* node, Json& json) {
  json["format"] = {
      {"width", picture.width}, {"height", picture.height}, {"pixelAspect", picture.pixelAspect}};
  addCamera(node, picture, json);
}

Json predictionJson(const PredictedBlur& blur, int largestKernel) {
  Json json;
  json["front"] = depthJson(blur.front);
  json["back"] = depthJson(blur.back);
  json["limit"] = blur.most;
  json["largestKernel"] = largestKernel;
  json["estimate"] = nullptr;
  // One of each odd size up to it, or up to the next above.
  json["kernels"] = largestKernel / 2 + 1;
  return json;
}

// The part of the picture's box that the node's own scan of the depth sees.
PixelBox scannedBox(const Picture& picture) {
  const PixelBox& box = picture.box;
  const PixelBox inside{std::max(box.x, 0), std::max(box.y, 0), std::min(box.r, picture.width),
                        std::min(box.t, picture.height)};
  return inside.empty() ? box : inside;
}

void addEstimate(const std::optional<PredictedCost>& cost, Json& prediction) {
  if (!cost) return;
  prediction["estimate"] = {{"seconds", cost->seconds}, {"memoryBytes", cost->memoryBytes}};
}

Json flatPrediction(const Picture& picture, const Node& node, const AskedRender& asked) {
  const PictureChannel* chosen = chosenDepth(picture, node);
  if (chosen == nullptr) return nullptr;
  const DepthPlane depth = depthPlane(picture, *chosen, scannedBox(picture));
  const PredictedBlur blur = predictBlur(asked, picture, depth, false);
  Json json = predictionJson(blur, blur.largestKernel());
  addEstimate(predictCost(asked, picture, blur), json);
  return json;
}

PredictedBlur blurBetween(const Json& near, const Json& far, const Picture& picture,
                          const AskedRender& asked) {
  const auto ends = std::make_shared<std::vector<float>>(
      std::initializer_list<float>{near.get<float>(), far.get<float>()});
  return predictBlur(asked, picture, {{0, 0, 2, 1}, ends, false}, true);
}

// Blur grows with the distance from focus, so that the two ends of all depths are enough. The node
// makes its kernels for the farthest back of each pixel.
Json deepPrediction(DeepExrSource& deep, const Json& figures, const AskedRender& asked) {
  const Json& backs = figures["farthestBacks"];
  if (!figures["near"].is_number() || !backs["min"].is_number()) return nullptr;
  const Picture picture = emptyPicture(deep);
  const PredictedBlur made = blurBetween(backs["min"], backs["max"], picture, asked);
  const PredictedBlur needed = blurBetween(figures["near"], figures["far"], picture, asked);
  Json json = predictionJson(needed, made.largestKernel());
  const DeepAmounts amounts{figures["samples"]["all"], figures["pieces"]};
  addEstimate(predictCost(asked, deep, amounts, made), json);
  return json;
}

void addFlat(const std::string& path, const ExrFacts& facts, const AskedRender* asked, bool predict,
             Node* node, Json& json) {
  const Picture picture = readExr(path);
  const auto source = [&](const Knob& knob, const ControlSetting&) {
    return knob.name() == "depthChannel" ? &picture : nullptr;
  };
  if (asked != nullptr) asked->changes.applyChannels(*node, source);
  addFormat(picture, node, json);
  json["layers"] = layersJson(picture);
  json["depth"] = depthOf(picture, viewsOf(picture, facts), node);
  throwIfInterrupted();
  if (predict) json["prediction"] = flatPrediction(picture, *node, *asked);
}

void addDeep(const std::string& path, const AskedRender* asked, bool predict, const Node* node,
             Json& json) {
  DeepExrSource deep(path, "", "");
  if (json["format"].is_null()) addFormat(emptyPicture(deep), node, json);
  json["deep"] = inspectDeep(deep);
  const bool flatToo = !json["layers"].is_null();
  if (predict && !flatToo) json["prediction"] = deepPrediction(deep, json["deep"], *asked);
}

std::unique_ptr<Node> askedNode(const AskedRender* asked) {
  if (asked == nullptr) return nullptr;
  auto node = std::make_unique<Node>(asked->description);
  asked->changes.applyValues(*node, asked->frame);
  return node;
}

}  // namespace

Json inspectFile(const std::string& path, const AskedRender* asked, bool predict) {
  throwIfInterrupted();
  const std::unique_ptr<Node> node = askedNode(asked);
  predict = predict && asked != nullptr;
  const ExrFacts facts = scanExrHeader(path);
  Json json;
  json["file"] = path;
  json["format"] = nullptr;
  json["parts"] = Json::array();
  for (const ExrPartFacts& part : facts.parts)
    json["parts"].push_back(partJson(part));
  for (const char* name : {"camera", "cameraLacks", "layers", "depth", "deep", "prediction"})
    json[name] = nullptr;
  const auto deep = [](const ExrPartFacts& part) { return part.deep; };
  if (!std::all_of(facts.parts.begin(), facts.parts.end(), deep)) {
    addFlat(path, facts, asked, predict, node.get(), json);
  }
  if (std::any_of(facts.parts.begin(), facts.parts.end(), deep))
    addDeep(path, asked, predict, node.get(), json);
  return json;
}

}  // namespace drevintool
