#include "terminal/SizeText.h"

#include <fmt/format.h>

#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>

#include "terminal/NumberText.h"

namespace drevintool {
namespace {

// The same for "G", "GB" and "GiB".
std::optional<double> unitBytes(std::string unit) {
  const std::string letters = "KMGT";
  for (const char* ending : {"iB", "B"}) {
    if (unit == unit.substr(0, 1) + ending) unit.resize(1);
  }
  if (unit.size() != 1) return std::nullopt;
  const std::size_t place =
      letters.find(static_cast<char>(std::toupper(static_cast<unsigned char>(unit.front()))));
  if (place == std::string::npos) return std::nullopt;
  return std::ldexp(1.0, 10 * (static_cast<int>(place) + 1));
}

}  // namespace

std::optional<std::uint64_t> parseSize(const std::string& text) {
  const std::size_t end = text.find_first_not_of("0123456789.");
  if (end == std::string::npos) return std::nullopt;
  const std::optional<double> number = parseNumber(text.substr(0, end));
  const std::optional<double> unit = unitBytes(text.substr(end));
  constexpr double kMost = 9223372036854775808.0;
  if (!number || !unit || *number * *unit < 1.0 || *number * *unit >= kMost) return std::nullopt;
  return static_cast<std::uint64_t>(*number * *unit);
}

std::string sizeText(std::uint64_t bytes) {
  constexpr std::array<const char*, 5> kUnits = {"B", "KiB", "MiB", "GiB", "TiB"};
  std::size_t unit = 0;
  auto amount = static_cast<double>(bytes);
  for (; amount >= 1024.0 && unit + 1 < kUnits.size(); ++unit)
    amount /= 1024.0;
  return unit == 0 ? fmt::format("{} B", bytes) : fmt::format("{:.1f} {}", amount, kUnits[unit]);
}

}  // namespace drevintool
