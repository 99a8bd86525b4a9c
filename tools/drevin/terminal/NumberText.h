#pragma once

/// Numbers from texts, strictly: the whole text, any locale, nothing that is not finite.

#include <optional>
#include <string>

namespace drevintool {

/// The number, or nothing if `text` is not wholly a decimal number, or one that is not finite or
/// that single precision cannot hold ("1e999", "1e39", "nan", "0x10", "", " 1").
std::optional<double> parseNumber(const std::string& text);

/// The whole number, or nothing if it is none or does not fit in an int.
std::optional<int> parseInteger(const std::string& text);

/// The shortest text that reads back to the same single precision value, or to the same double
/// where `value` is not a single precision value.
std::string numberText(double value);

/// The shortest text that reads back to the same double: "88888888", where numberText says
/// "8.888889e+07", which is the same single precision value but another double.
std::string exactNumberText(double value);

/// The value that numberText spells: 0.1 for the float nearest to 0.1.
double tidyNumber(double value);

}  // namespace drevintool
