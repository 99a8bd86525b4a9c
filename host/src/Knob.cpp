#include "DDImage/Knob.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "DDImage/Hash.h"

namespace DD {
namespace Image {

Knob Knob::showPanel;
Knob Knob::inputChange;

Knob::Knob(Declaration declaration)
    : type_(declaration.type),
      single_(declaration.single),
      kind_(declaration.kind),
      name_(std::move(declaration.name)),
      label_(std::move(declaration.label)),
      values_(declaration.values),
      defaults_(std::move(declaration.values)),
      mask_(declaration.mask),
      defaultMask_(declaration.mask),
      choices_(std::move(declaration.choices)),
      channelInput_(declaration.channelInput),
      text_(std::move(declaration.text)) {}

std::optional<double> Knob::admitted(double value) const {
  if (!std::isfinite(value)) return std::nullopt;
  if (type_ == Type::Boolean) return value != 0.0 ? 1.0 : 0.0;
  if (range_ && (flags_ & FORCE_RANGE) != 0) {
    value = std::max(range_->first, std::min(value, range_->second));
  }
  if (type_ == Type::Real) {
    const bool tooLarge = std::abs(value) > static_cast<double>(std::numeric_limits<float>::max());
    if (single_ && tooLarge) return std::nullopt;
    return value;
  }
  value = std::trunc(value);
  double lowest = 0.0;
  double highest = static_cast<double>(Chan_Last);
  if (type_ == Type::Choice) {
    highest = std::max(0.0, static_cast<double>(choices_.size()) - 1.0);
    return std::max(lowest, std::min(value, highest));
  }
  if (type_ == Type::Integer) {
    lowest = static_cast<double>(std::numeric_limits<int>::min());
    highest = static_cast<double>(std::numeric_limits<int>::max());
  }
  if (value < lowest || value > highest) return std::nullopt;
  return value;
}

void Knob::set_value(double value, int index) {
  const std::optional<double> taken = admitted(value);
  if (!taken) return;
  if (index < 0) {
    std::fill(values_.begin(), values_.end(), *taken);
  } else if (index < components()) {
    values_[static_cast<std::size_t>(index)] = *taken;
  }
}

double Knob::get_value(int index) const {
  return index >= 0 && index < components() ? values_[static_cast<std::size_t>(index)] : 0.0;
}

void Knob::set_values(const float* values, int count) {
  for (int i = 0; i < count; ++i)
    set_value(static_cast<double>(values[i]), i);
}

Channel Knob::channel(int index) const {
  return static_cast<Channel>(get_value(index));
}

void Knob::append(Hash& hash) const {
  if ((flags_ & NO_RERENDER) != 0 || type_ == Type::Decoration) return;
  hash.append(name_);
  // Channels by name: their numbers depend on the order in which names were first asked for.
  if (type_ == Type::Channels || type_ == Type::Mask) {
    hash.append(valueText());
    return;
  }
  // Numbers that fill the same float are the same data.
  for (const double value : values_)
    hash.append(single_ ? static_cast<double>(static_cast<float>(value)) : value);
}

}  // namespace Image
}  // namespace DD
