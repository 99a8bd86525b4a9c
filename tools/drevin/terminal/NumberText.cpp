#include "terminal/NumberText.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace drevintool {
namespace {

constexpr double kMostFloat = static_cast<double>(std::numeric_limits<float>::max());

template <typename Value>
std::optional<Value> parseWhole(const std::string& text) {
  Value value{};
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  const char* begin = text.data() + (plus ? 1 : 0);
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return value;
}

}  // namespace

std::optional<double> parseNumber(const std::string& text) {
  const std::optional<double> value = parseWhole<double>(text);
  if (!value || !std::isfinite(*value) || std::fabs(*value) > kMostFloat) return std::nullopt;
  return value;
}

std::optional<int> parseInteger(const std::string& text) {
  return parseWhole<int>(text);
}

std::string numberText(double value) {
  const bool single =
      std::fabs(value) <= kMostFloat && static_cast<double>(static_cast<float>(value)) == value;
  return single ? fmt::format("{}", static_cast<float>(value)) : exactNumberText(value);
}

std::string exactNumberText(double value) {
  return fmt::format("{}", value);
}

double tidyNumber(double value) {
  return parseWhole<double>(numberText(value)).value_or(value);
}

}  // namespace drevintool
