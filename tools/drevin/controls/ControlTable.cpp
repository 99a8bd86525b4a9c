#include "controls/ControlTable.h"

#include <fmt/format.h>

#include <vector>

#include "terminal/NumberText.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

constexpr std::size_t kColumns = 100;

std::string shortened(const std::string& text, std::size_t most) {
  return text.size() <= most ? text : text.substr(0, most - 3) + "...";
}

std::string valueText(const Knob& knob) {
  if (knob.type() == Knob::Type::Choice) {
    return knob.choices().at(static_cast<std::size_t>(knob.get_value()));
  }
  if (knob.type() != Knob::Type::Real && knob.type() != Knob::Type::Integer)
    return knob.valueText();
  std::string text;
  for (int i = 0; i < knob.components(); ++i) {
    text += (i == 0 ? "" : ",") + numberText(knob.get_value(i));
  }
  return text;
}

std::string rangeText(const Knob& knob) {
  if (!knob.range()) return {};
  const bool forced = (knob.flags() & Knob::FORCE_RANGE) != 0;
  return numberText(knob.range()->first) + ".." + numberText(knob.range()->second) +
         (forced ? " forced" : "");
}

std::string stateText(const Knob& knob, const Knob& fresh) {
  std::string state = knob.isEnabled() ? "" : "greyed";
  if (valueText(knob) != valueText(fresh)) {
    state += (state.empty() ? "" : ", ") + ("default " + valueText(fresh));
  }
  return state;
}

std::string withoutTrailingBlanks(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string choiceLines(const std::vector<std::string>& choices) {
  const std::string indent(6, ' ');
  std::string lines;
  std::string line = indent;
  for (std::size_t i = 0; i < choices.size(); ++i) {
    const std::string word = choices[i] + (i + 1 < choices.size() ? ", " : "");
    if (line.size() + word.size() > kColumns) {
      lines += withoutTrailingBlanks(line) + "\n";
      line = indent;
    }
    line += word;
  }
  return lines + line + "\n";
}

std::string controlLines(const Knob& knob, const Knob& fresh) {
  const std::string name = knob.name().empty() ? knob.label() : knob.name();
  const std::string line =
      fmt::format("  {:<32} {:<24} {:<15} {}", name, shortened(valueText(knob), 24),
                  rangeText(knob), shortened(stateText(knob, fresh), 24));
  const std::string choices = knob.choices().empty() ? "" : choiceLines(knob.choices());
  return withoutTrailingBlanks(line) + "\n" + choices;
}

}  // namespace

std::string controlTable(const Node& node, const Node& fresh) {
  std::string table;
  for (std::size_t i = 0; i < node.knobs().size(); ++i) {
    const Knob& knob = *node.knobs()[i];
    if (knob.kind() == "Tab_knob") {
      table += (table.empty() ? "" : "\n") + knob.label() + "\n";
    } else {
      table += controlLines(knob, *fresh.knobs()[i]);
    }
  }
  return table;
}

}  // namespace drevintool
