#include "controls/ControlJson.h"

#include <cmath>
#include <cstdint>

#include "terminal/NumberText.h"

namespace drevintool {
namespace {

using DD::Image::Knob;
using Json = nlohmann::ordered_json;

// Whole numbers come out without a decimal point.
Json numberJson(double value) {
  constexpr double kExact = 9007199254740992.0;
  if (value == std::floor(value) && std::fabs(value) < kExact) {
    return static_cast<std::int64_t>(value);
  }
  return tidyNumber(value);
}

Json componentsJson(const Knob& knob) {
  if (knob.components() == 1) return numberJson(knob.get_value());
  Json numbers = Json::array();
  for (int i = 0; i < knob.components(); ++i)
    numbers.push_back(numberJson(knob.get_value(i)));
  return numbers;
}

}  // namespace

Json numbersJson(const std::vector<double>& numbers) {
  Json array = Json::array();
  for (const double number : numbers)
    array.push_back(numberJson(number));
  return array;
}

Json valueJson(const Knob& knob) {
  switch (knob.type()) {
    case Knob::Type::Boolean:
      return knob.get_value() != 0.0;
    case Knob::Type::Integer:
    case Knob::Type::Real:
      return componentsJson(knob);
    case Knob::Type::Choice:
      return knob.choices().at(static_cast<std::size_t>(knob.get_value()));
    case Knob::Type::Channels:
    case Knob::Type::Mask:
      return knob.valueText();
    case Knob::Type::Decoration:
      break;
  }
  const std::string text = knob.valueText();
  return text.empty() ? Json() : Json(text);
}

}  // namespace drevintool
