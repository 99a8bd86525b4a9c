#pragma once

/// Controls and their values as JSON.

#include <nlohmann/json.hpp>

#include "DDImage/Knob.h"

namespace drevintool {

/// The control's value: a number, an array of numbers, a boolean, a choice's label, a channel's
/// name or those of a set; a text's text; null for a tab. Single precision values come out as the
/// shortest number that reads back to them.
nlohmann::ordered_json valueJson(const DD::Image::Knob& knob);

/// [x, y, r, t].
nlohmann::ordered_json numbersJson(const std::vector<double>& numbers);

}  // namespace drevintool
