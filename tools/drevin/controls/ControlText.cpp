#include "controls/ControlText.h"

#include <algorithm>
#include <vector>

#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

[[noreturn]] void fail(const ControlSetting& setting, const std::string& reason,
                       ExitCode code = ExitCode::Usage) {
  throw ToolError(code, oneLine(setting.text + ": " + reason));
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : ", ") + name;
  return text;
}

void checkRange(const Knob& knob, double value, const ControlSetting& setting) {
  if ((knob.flags() & Knob::FORCE_RANGE) == 0 || !knob.range()) return;
  const auto [least, most] = *knob.range();
  if (value >= least && value <= most) return;
  fail(setting, "is outside the range " + numberText(least) + " to " + numberText(most));
}

double parseComponent(const Knob& knob, const std::string& text, const ControlSetting& setting) {
  const std::optional<double> value = parseNumber(text);
  if (!value) fail(setting, "'" + text + "' is not a number that it can hold");
  if (knob.type() == Knob::Type::Integer && !parseInteger(text)) {
    fail(setting, "'" + text + "' is not a whole number");
  }
  checkRange(knob, *value, setting);
  return *value;
}

void setBoolean(Node& node, Knob& knob, const ControlSetting& setting) {
  const bool on = setting.value == "1" || setting.value == "true";
  if (!on && setting.value != "0" && setting.value != "false") {
    fail(setting, "takes 0, 1, true or false");
  }
  node.setByHand(knob, std::vector<double>{on ? 1.0 : 0.0});
}

// A label counts before an index: "16mm" is a label, "5" is an index.
void setChoice(Node& node, Knob& knob, const ControlSetting& setting) {
  const std::vector<std::string>& labels = knob.choices();
  const auto found = std::find(labels.begin(), labels.end(), setting.value);
  if (found != labels.end()) {
    node.setByHand(knob, std::vector<double>{static_cast<double>(found - labels.begin())});
    return;
  }
  const std::optional<int> index = parseInteger(setting.value);
  if (index && *index >= 0 && *index < static_cast<int>(labels.size())) {
    node.setByHand(knob, std::vector<double>{static_cast<double>(*index)});
    return;
  }
  const std::string nearest = nearestName(setting.value, labels);
  fail(setting, (nearest.empty() ? "" : "did you mean '" + nearest + "'? ") +
                    std::string("takes ") + joined(labels) + ", or 0 to " +
                    std::to_string(labels.size() - 1));
}

[[noreturn]] void failMissing(const ControlSetting& setting, const std::string& name,
                              const Picture& source) {
  fail(setting, source.path + " has no channel '" + name + "'" + channelHint(source, name),
       ExitCode::InputUnreadable);
}

std::string channelName(const ControlSetting& setting, const std::string& name,
                        const Picture* source) {
  if (name.empty()) fail(setting, "takes a channel's name or none");
  if (name == "none") return name;
  if (source == nullptr) return hostChannelName(name);
  const PictureChannel* channel = findChannel(*source, name);
  if (channel == nullptr) failMissing(setting, name, *source);
  return channel->hostName;
}

[[noreturn]] void failUnnumbered(const ControlSetting& setting, const std::string& name) {
  fail(setting, "the host has no place for '" + name + "'");
}

// The members of a layer of the picture, by their host names.
std::vector<std::string> layerMembers(const Picture* source, const std::string& layer) {
  std::vector<std::string> members;
  if (source == nullptr) return members;
  for (const PictureChannel& channel : source->channels) {
    const std::size_t dot = channel.hostName.rfind('.');
    if (channel.hostName.substr(0, dot) == layer) members.push_back(channel.hostName);
  }
  return members;
}

std::vector<std::string> setMembers(const ControlSetting& setting, const std::string& name,
                                    const Picture* source) {
  if (name == "rgb") return {"rgba.red", "rgba.green", "rgba.blue"};
  if (name == "rgba") return {"rgba.red", "rgba.green", "rgba.blue", "rgba.alpha"};
  if (name == "all" || name == "none") fail(setting, "'" + name + "' stands alone");
  const bool isChannel = source != nullptr && findChannel(*source, name) != nullptr;
  std::vector<std::string> layer = layerMembers(source, name);
  if (!isChannel && !layer.empty()) return layer;
  const std::string hostName = channelName(setting, name, source);
  DD::Image::getChannel(hostName.c_str());  // so that the host knows it by name
  return {hostName};
}

std::string maskText(const ControlSetting& setting, const Picture* source) {
  if (setting.value == "all" || setting.value == "none") return setting.value;
  const std::vector<std::string> names = splitList(setting.value);
  if (names.empty()) fail(setting, "takes all, none, rgb, rgba or channels by commas");
  std::vector<std::string> members;
  for (const std::string& name : names) {
    const std::vector<std::string> more = setMembers(setting, name, source);
    members.insert(members.end(), more.begin(), more.end());
  }
  return joined(members);
}

}  // namespace

ControlSetting parseSetting(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw ToolError(ExitCode::Usage, oneLine("--set " + text + ": give NAME=VALUE"));
  }
  return {text.substr(0, equals), text.substr(equals + 1), "--set " + text};
}

Knob& controlNamed(const Node& node, const ControlSetting& setting) {
  if (Knob* knob = node.knob(setting.name)) return *knob;
  std::vector<std::string> names;
  for (const auto& knob : node.knobs()) {
    if (!knob->name().empty()) names.push_back(knob->name());
  }
  const std::string nearest = nearestName(setting.name, names);
  fail(setting,
       "no control '" + setting.name + "'" +
           (nearest.empty() ? "; see drevin controls" : "; did you mean " + nearest + "?"));
}

std::vector<double> parseNumbers(const Knob& knob, const ControlSetting& setting) {
  const std::vector<std::string> texts = splitList(setting.value);
  const auto count = static_cast<std::size_t>(knob.components());
  const bool oneForAll = texts.size() == 1 && knob.kind() == "Color_knob";
  if (texts.size() != count && !oneForAll) {
    fail(setting,
         "takes " + std::to_string(count) + (count == 1 ? " number" : " numbers, by commas"));
  }
  std::vector<double> values;
  values.reserve(count);
  for (const std::string& text : texts)
    values.push_back(parseComponent(knob, text, setting));
  if (oneForAll) values.resize(count, values.front());
  return values;
}

bool picksChannels(const Knob& knob) {
  return knob.type() == Knob::Type::Channels || knob.type() == Knob::Type::Mask;
}

void setValue(Node& node, Knob& knob, const ControlSetting& setting) {
  if (knob.type() == Knob::Type::Boolean) {
    setBoolean(node, knob, setting);
  } else if (knob.type() == Knob::Type::Choice) {
    setChoice(node, knob, setting);
  } else {
    node.setByHand(knob, parseNumbers(knob, setting));
  }
}

void setChannels(Node& node, Knob& knob, const ControlSetting& setting, const Picture* source) {
  if (knob.type() == Knob::Type::Channels) {
    const std::string name = channelName(setting, setting.value, source);
    const DD::Image::Channel channel = DD::Image::getChannel(name.c_str());
    if (channel == DD::Image::Chan_Black && name != "none") failUnnumbered(setting, name);
    node.setByHand(knob, std::vector<double>{static_cast<double>(channel)});
    return;
  }
  const std::string text = maskText(setting, source);
  if (!node.setByHand(knob, text)) failUnnumbered(setting, text);
}

}  // namespace drevintool
