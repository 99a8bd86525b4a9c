#include "controls/KeyedSettings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

[[noreturn]] void fail(const ControlSetting& setting, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine(setting.text + ": " + reason));
}

// The frame behind the '@' of a name, which is taken off it; nothing if there is none.
std::optional<double> takeFrame(ControlSetting& setting) {
  const std::size_t at = setting.name.find('@');
  if (at == std::string::npos) return std::nullopt;
  const std::string text = setting.name.substr(at + 1);
  setting.name.resize(at);
  const std::optional<double> frame = parseNumber(text);
  if (!frame || std::abs(*frame) > kFarthestFrame) fail(setting, "'" + text + "' is no frame");
  return frame;
}

void addKey(KeyedSetting& group, KeyedSetting::Key key) {
  const auto place =
      std::lower_bound(group.keys.begin(), group.keys.end(), key.frame,
                       [](const KeyedSetting::Key& k, double frame) { return k.frame < frame; });
  if (place != group.keys.end() && place->frame == key.frame) {
    fail(key.setting, "has a key at frame " + numberText(key.frame) + " already");
  }
  group.keys.insert(place, std::move(key));
}

}  // namespace

std::vector<KeyedSetting> groupSettings(const std::vector<std::string>& texts) {
  std::vector<KeyedSetting> groups;
  std::map<std::string, std::size_t> keyed;
  std::map<std::string, bool> seen;
  for (const std::string& text : texts) {
    ControlSetting setting = parseSetting(text);
    const std::optional<double> frame = takeFrame(setting);
    const auto [entry, isNew] = seen.emplace(setting.name, frame.has_value());
    if (!isNew && entry->second != frame.has_value()) {
      fail(setting, setting.name + " is set with keys and without; give one or the other");
    }
    if (frame && !isNew) {
      KeyedSetting& group = groups[keyed[setting.name]];
      addKey(group, {*frame, std::move(setting)});
      continue;
    }
    if (frame) keyed[setting.name] = groups.size();
    groups.push_back({frame.has_value(), {{frame.value_or(0.0), std::move(setting)}}});
  }
  return groups;
}

std::vector<ControlCurve> curvesOf(const Knob& knob, const KeyedSetting& setting) {
  if (knob.type() != Knob::Type::Integer && knob.type() != Knob::Type::Real) {
    fail(setting.first(), knob.name() + " takes no keys, for it does not hold numbers");
  }
  std::vector<std::vector<CurveKey>> keys(static_cast<std::size_t>(knob.components()));
  for (const KeyedSetting::Key& key : setting.keys) {
    const std::vector<double> values = parseNumbers(knob, key.setting);
    for (std::size_t i = 0; i < keys.size(); ++i)
      keys[i].push_back({key.frame, values[i], false});
  }
  std::vector<ControlCurve> curves;
  curves.reserve(keys.size());
  for (std::vector<CurveKey>& of : keys)
    curves.emplace_back(std::move(of));
  return curves;
}

}  // namespace drevintool
