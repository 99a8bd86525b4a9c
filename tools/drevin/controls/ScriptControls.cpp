#include "controls/ScriptControls.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "controls/ScriptCurve.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

// What the host keeps with every node: where it stands, how it looks, what it does when it changes.
bool isOfTheHost(const std::string& name) {
  static const std::array<const char*, 40> kNames = {"name",
                                                     "xpos",
                                                     "ypos",
                                                     "inputs",
                                                     "selected",
                                                     "tile_color",
                                                     "gl_color",
                                                     "label",
                                                     "note_font",
                                                     "note_font_size",
                                                     "note_font_color",
                                                     "hide_input",
                                                     "cached",
                                                     "dope_sheet",
                                                     "postage_stamp",
                                                     "postage_stamp_frame",
                                                     "lifetimeStart",
                                                     "lifetimeEnd",
                                                     "useLifetime",
                                                     "indicators",
                                                     "bookmark",
                                                     "icon",
                                                     "autolabel",
                                                     "onCreate",
                                                     "onDestroy",
                                                     "knobChanged",
                                                     "updateUI",
                                                     "panel",
                                                     "help",
                                                     "addUserKnob",
                                                     "rootNodeUpdated",
                                                     "process_mask",
                                                     "panelDropped",
                                                     "valid",
                                                     "mapsize",
                                                     "window",
                                                     "beforeRender",
                                                     "afterRender",
                                                     "renderProgress",
                                                     "disable"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

double defaultOf(const Knob& knob, int component) {
  Knob fresh = knob;
  fresh.set_text(knob.defaultText().c_str());
  return fresh.get_value(component);
}

// The words of a braced value; the value itself where it is no list of words, but an expression.
std::vector<ScriptWord> wordsOf(const ScriptWord& value) {
  if (!value.braced) return {value};
  try {
    return scriptWords(value.text);
  } catch (const ScriptFault&) {
    return {value};
  }
}

// The components of a value: a braced list of them, a curve in a single pair of braces, or one.
std::vector<ScriptWord> componentsOf(const ScriptWord& value) {
  std::vector<ScriptWord> words = wordsOf(value);
  if (!words.empty() && !words.front().braced && words.front().text == "curve") return {value};
  return words;
}

// What is so of several components is told once.
void dropRepeated(std::vector<std::string>& texts, std::size_t from) {
  for (std::size_t i = from; i < texts.size();) {
    const auto own = texts.begin() + static_cast<std::ptrdiff_t>(i);
    const auto first = texts.begin() + static_cast<std::ptrdiff_t>(from);
    if (std::find(first, own, *own) == own) {
      ++i;
    } else {
      texts.erase(own);
    }
  }
}

bool holdsNumbers(const Knob& knob) {
  return knob.type() == Knob::Type::Integer || knob.type() == Knob::Type::Real;
}

std::string shownValue(const Knob& knob, double value) {
  if (knob.type() == Knob::Type::Boolean) return value != 0.0 ? "true" : "false";
  if (knob.type() != Knob::Type::Choice) return numberText(value);
  const auto index = static_cast<std::size_t>(std::max(value, 0.0));
  return index < knob.choices().size() ? knob.choices()[index] : numberText(value);
}

// Steps of a choice or a boolean have nothing in between.
ControlCurve stepped(const ControlCurve& curve) {
  std::vector<CurveKey> keys = curve.keys();
  for (CurveKey& key : keys)
    key.constant = true;
  return ControlCurve(std::move(keys));
}

}  // namespace

ScriptControls::ScriptControls(const ScriptNode& script, const Node& node,
                               const std::set<std::string>& ignored, std::string origin)
    : origin_(std::move(origin)) {
  if (const ScriptWord* name = script.find("name")) nodeName_ = name->text;
  for (const ScriptKnob& entry : script.knobs) {
    if (ignored.count(entry.name) != 0) continue;
    take(entry, node);
  }
}

void ScriptControls::fail(const std::string& knob, const std::string& reason) const {
  throw ToolError(ExitCode::InputUnreadable, oneLine(origin_ + ": " + knob + ": " + reason));
}

void ScriptControls::warn(const std::string& knob, const std::string& text) {
  warnings_.push_back(oneLine(origin_ + ": " + knob + ": " + text));
}

void ScriptControls::take(const ScriptKnob& entry, const Node& node) {
  const Knob* knob = node.knob(entry.name);
  if (knob == nullptr) {
    const bool on = entry.value.text != "false" && entry.value.text != "0";
    if (entry.name == "disable" && on) warn(entry.name, "the node is rendered all the same");
    if (!isOfTheHost(entry.name)) warn(entry.name, "is no control of the node; it is left out");
  } else if (picksChannels(*knob)) {
    takeChannels(entry);
  } else {
    takeNumbers(entry, *knob);
  }
}

// Members of a set that are off stand with a minus before their names.
void ScriptControls::takeChannels(const ScriptKnob& entry) {
  std::string value;
  for (const ScriptWord& word : wordsOf(entry.value)) {
    if (word.text.empty() || word.text.front() == '-') continue;
    if (word.braced) fail(entry.name, "'" + entry.value.text + "' names no channels");
    value += (value.empty() ? "" : ",") + word.text;
  }
  if (value.empty()) value = "none";
  const auto same = [&](const ControlSetting& s) { return s.name == entry.name; };
  channels_.erase(std::remove_if(channels_.begin(), channels_.end(), same), channels_.end());
  channels_.push_back({entry.name, value, origin_ + ": " + entry.name + " " + value});
}

void ScriptControls::takeNumbers(const ScriptKnob& entry, const Knob& knob) {
  const auto count = static_cast<std::size_t>(knob.components());
  std::vector<ScriptWord> words = componentsOf(entry.value);
  if (words.size() == 1) words.resize(count, ScriptWord(words.front()));
  const bool listed = words.size() == count;
  if (!listed) words.assign(count, {entry.value.text, true});
  std::vector<ControlCurve> curves;
  curves.reserve(count);
  const std::size_t before = warnings_.size();
  for (std::size_t i = 0; i < count; ++i) {
    // What is an expression as a whole is so for every component: it is told once.
    const std::size_t told = warnings_.size();
    curves.push_back(curveOf(words[i], knob, static_cast<int>(i)));
    const bool again = i > 0 && words[i].text == words[i - 1].text && warnings_.size() > told;
    if (again) warnings_.pop_back();
  }
  dropRepeated(warnings_, before);
  if (curves_.erase(entry.name) == 0) order_.push_back(entry.name);
  curves_.emplace(entry.name, std::move(curves));
}

ControlCurve ScriptControls::curveOf(const ScriptWord& word, const Knob& knob, int component) {
  if (const std::optional<double> value = plainValue(word.text, knob)) {
    return heldCurve(ControlCurve(*value), knob, component);
  }
  const std::optional<ScriptCurve> read = parseScriptCurve(word.text);
  if (read) {
    if (!holdsNumbers(knob)) return stepped(read->curve);
    if (read->straightened) warn(knob.name(), "is smooth between its keys; lines are used");
    return heldCurve(read->curve, knob, component);
  }
  if (!word.braced && knob.type() == Knob::Type::Choice) {
    std::string labels;
    for (const std::string& label : knob.choices())
      labels += (labels.empty() ? "" : ", ") + label;
    fail(knob.name(), "'" + word.text + "' is none of " + labels);
  }
  const double value = defaultOf(knob, component);
  warn(knob.name(), "'" + word.text + "' cannot be evaluated here; its default " +
                        shownValue(knob, value) + " is used");
  return ControlCurve(value);
}

// With the values that the control makes of them: it cuts at its ends, and whole numbers have no
// fraction. Between keys of a line it cuts the values of each frame, so that such keys stay.
ControlCurve ScriptControls::heldCurve(const ControlCurve& curve, const Knob& knob, int component) {
  if (!holdsNumbers(knob)) return curve;
  std::vector<CurveKey> keys = curve.keys();
  Knob scratch = knob;
  bool told = false;
  for (CurveKey& key : keys) {
    const bool alone = key.constant || !curve.varies();
    // A number that it takes for none leaves it as it was.
    scratch.set_value(knob.get_value(component), component);
    scratch.set_value(key.value, component);
    const double held = scratch.get_value(component);
    const bool fraction = knob.type() == Knob::Type::Integer && std::trunc(key.value) == held;
    if (held == key.value || (!alone && fraction)) continue;
    if (!told) {
      warn(knob.name(), numberText(key.value) +
                            (fraction ? " is no whole number" : " is out of range") + "; " +
                            numberText(held) + " is used");
    }
    told = true;
    if (alone) key.value = held;
  }
  return ControlCurve(std::move(keys));
}

std::optional<double> ScriptControls::plainValue(const std::string& text, const Knob& knob) const {
  if (knob.type() == Knob::Type::Boolean && (text == "true" || text == "false")) {
    return text == "true" ? 1.0 : 0.0;
  }
  if (knob.type() == Knob::Type::Choice) {
    const std::vector<std::string>& labels = knob.choices();
    const auto label = std::find(labels.begin(), labels.end(), text);
    if (label != labels.end()) return static_cast<double>(label - labels.begin());
    const std::optional<int> index = parseInteger(text);
    if (!index || *index < 0 || *index >= static_cast<int>(labels.size())) return std::nullopt;
    return *index;
  }
  return parseNumber(text);
}

std::vector<double> ScriptControls::valuesOf(const std::string& name,
                                             std::optional<double> frame) const {
  const std::vector<ControlCurve>& curves = curves_.at(name);
  std::vector<double> values;
  values.reserve(curves.size());
  for (const ControlCurve& curve : curves) {
    if (curve.varies() && !frame) {
      throw ToolError(ExitCode::Usage,
                      oneLine(origin_ + ": " + name +
                              " changes over frames; name the frames to render with --frames, "
                              "such as --frames 12"));
    }
    values.push_back(curve.at(frame.value_or(0.0)));
  }
  return values;
}

// By hand first, so that the panel greys what it should; what one control then fills into others is
// taken back, for the script has the values as they were when it was saved.
void ScriptControls::applyValues(Node& node, std::optional<double> frame) const {
  for (const std::string& name : order_)
    node.setByHand(*node.knob(name), valuesOf(name, frame));
  if (order_.empty()) return;
  for (const auto& knob : node.knobs()) {
    if (knob->type() == Knob::Type::Decoration || picksChannels(*knob)) continue;
    if (curves_.count(knob->name()) == 0) {
      if (knob->valueText() != knob->defaultText()) knob->set_text(knob->defaultText().c_str());
      continue;
    }
    const std::vector<double> values = valuesOf(knob->name(), frame);
    for (std::size_t i = 0; i < values.size(); ++i)
      knob->set_value(values[i], static_cast<int>(i));
  }
}

}  // namespace drevintool
