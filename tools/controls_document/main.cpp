/// Prints docs/controls.md from the table of controls.

#include <iostream>
#include <sstream>
#include <string>
#include <variant>

#include "DDImage/Channel.h"
#include "DDImage/ChannelSet.h"
#include "node/Controls.h"

namespace {

using drevin::DrevinSettings;
using drevin::dvControl;
using drevin::dvControlKind;
using drevin::dvControlRange;
using drevin::dvUnit;

std::string numberText(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

/// The default of a control, as an artist would write it.
struct DefaultText {
  const dvControl& control;
  DrevinSettings settings;

  std::string operator()(std::monostate /*field*/) const { return ""; }
  std::string operator()(float DrevinSettings::*field) const {
    return numberText(static_cast<double>(settings.*field));
  }
  std::string operator()(int DrevinSettings::*field) const {
    const int value = settings.*field;
    return control.choices == nullptr ? std::to_string(value) : control.choices[value];
  }
  std::string operator()(bool DrevinSettings::*field) const {
    return settings.*field ? "on" : "off";
  }
  std::string operator()(DD::Image::Channel DrevinSettings::*field) const {
    const DD::Image::Channel channel = settings.*field;
    return channel == DD::Image::Chan_Black ? "none" : DD::Image::getName(channel);
  }
  std::string operator()(DD::Image::ChannelSet DrevinSettings::*field) const {
    return (settings.*field) == DD::Image::Mask_RGBA ? "rgba" : "?";
  }
  std::string operator()(float (DrevinSettings::*field)[3]) const {
    return valuesText(settings.*field, 3);
  }
  std::string operator()(float (DrevinSettings::*field)[2]) const {
    return valuesText(settings.*field, 2);
  }

  static std::string valuesText(const float* values, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
      text += (i == 0 ? "" : ", ") + numberText(static_cast<double>(values[i]));
    }
    return text;
  }
};

std::string rangeText(const dvControlRange& range) {
  if (range.kind == dvControlRange::Kind::None) return "";
  const std::string ends = numberText(range.min) + " … " + numberText(range.max);
  return range.kind == dvControlRange::Kind::Forced ? "**" + ends + "**" : ends;
}

std::string choicesText(const dvControl& control) {
  std::string text;
  for (const char* const* label = control.choices; *label != nullptr; ++label) {
    text += (text.empty() ? "" : " · ") + std::string(*label);
  }
  return text;
}

const char* inputName(int input) {
  return input == 0 ? "the Input" : "the Mattes input";
}

std::string valuesColumn(const dvControl& control) {
  if (control.choices != nullptr) return choicesText(control);
  if (control.input >= 0) return std::string("channels of ") + inputName(control.input);
  if (control.kind == dvControlKind::Bool) return "on · off";
  return rangeText(control.range);
}

const char* unitText(dvUnit unit) {
  switch (unit) {
    case dvUnit::Pixels:
      return "px";
    case dvUnit::Millimetres:
      return "mm";
    case dvUnit::Turns:
      return "turns";
    case dvUnit::Scene:
      return "scene units";
    case dvUnit::None:
      break;
  }
  return "";
}

/// A tooltip as one table cell.
std::string cell(const char* text) {
  std::string result;
  for (const char* c = text == nullptr ? "" : text; *c != '\0'; ++c) {
    result += *c == '\n' ? "<br>" : std::string(1, *c);
  }
  return result;
}

void printControl(const dvControl& control) {
  if (control.kind == dvControlKind::Text) return;
  if (control.kind == dvControlKind::Tab) {
    std::cout << "\n## " << control.label << "\n\n"
              << "| control | label | default | values | unit | what the panel says |\n"
              << "|---|---|---|---|---|---|\n";
    return;
  }
  std::cout << "| `" << control.name << "` | " << control.label << " | "
            << std::visit(DefaultText{control, {}}, control.field) << " | " << valuesColumn(control)
            << " | " << unitText(control.unit) << " | " << cell(control.tooltip) << " |\n";
}

}  // namespace

int main() {
  std::cout
      << "# Controls\n\n"
         "Made from the table in `src/node/Controls.cpp` by `cmake --build --preset release "
         "--target docs`;\ndo not edit by hand. The names are those of `--set NAME=VALUE` and "
         "of saved scripts. A range in bold\nlimits what can be typed; the others are the "
         "slider's only.\n";
  for (const dvControl& control : drevin::dvControls)
    printControl(control);
  return std::cout.good() ? 0 : 1;
}
