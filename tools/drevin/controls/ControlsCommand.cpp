#include "controls/ControlsCommand.h"

#include <fmt/format.h>

#include <memory>
#include <optional>

#include "controls/CameraOption.h"
#include "controls/ControlChanges.h"
#include "controls/ControlJson.h"
#include "controls/ControlTable.h"
#include "controls/PluginSearch.h"
#include "terminal/Messages.h"

namespace drevintool {
namespace {

using DD::Image::Knob;
using Json = nlohmann::ordered_json;

Json flagsJson(const Knob& knob) {
  Json flags = Json::array();
  if ((knob.flags() & Knob::STARTLINE) != 0) flags.push_back("STARTLINE");
  if ((knob.flags() & Knob::FORCE_RANGE) != 0) flags.push_back("FORCE_RANGE");
  return flags;
}

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json controlJson(int index, const std::string& tab, const Knob& knob, const Knob& fresh) {
  Json entry;
  entry["index"] = index;
  entry["tab"] = tab;
  entry["name"] = textOrNull(knob.name());
  entry["label"] = knob.label();
  entry["kind"] = knob.kind();
  entry["range"] = knob.range() ? numbersJson({knob.range()->first, knob.range()->second}) : Json();
  entry["flags"] = flagsJson(knob);
  entry["default"] = valueJson(fresh);
  entry["value"] = valueJson(knob);
  entry["enabled"] = knob.isEnabled();
  entry["choices"] = knob.choices().empty() ? Json() : Json(knob.choices());
  entry["tooltip"] = knob.tooltip() ? Json(*knob.tooltip()) : Json();
  return entry;
}

Json controlsJson(const Node& node, const Node& fresh) {
  Json entries = Json::array();
  std::string tab;
  for (std::size_t i = 0; i < node.knobs().size(); ++i) {
    const Knob& knob = *node.knobs()[i];
    if (knob.kind() == "Tab_knob") tab = knob.label();
    entries.push_back(controlJson(static_cast<int>(i) + 1, tab, knob, *fresh.knobs()[i]));
  }
  return entries;
}

}  // namespace

int runControls(const ControlsArguments& arguments) {
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  std::unique_ptr<embedded::CameraInput> camera;
  const Node fresh(description);
  Node node(description);
  const ControlChanges changes(arguments, fresh);
  for (const std::string& warning : changes.warnings())
    printWarning(warning);
  changes.applyValues(node, std::nullopt);
  changes.applyChannels(node, [](const Knob&, const ControlSetting&) { return nullptr; });
  if (!arguments.camera.empty()) {
    const CameraOption option(arguments.camera);
    option.refuseHeader("controls reads no picture");
    camera = std::make_unique<embedded::CameraInput>(option.at(std::nullopt, node, nullptr).values);
    connectCamera(node, *camera);
  }
  const auto replace = Json::error_handler_t::replace;
  const std::string text = arguments.json
                               ? controlsJson(node, fresh).dump(2, ' ', false, replace) + "\n"
                               : controlTable(node, fresh);
  std::fputs(text.c_str(), stdout);
  return 0;
}

}  // namespace drevintool
