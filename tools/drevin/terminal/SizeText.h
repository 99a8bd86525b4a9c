#pragma once

/// Amounts of memory as a user writes and reads them.

#include <cstdint>
#include <optional>
#include <string>

namespace drevintool {

/// The bytes that "512M", "8G" or "1.5G" are: a number above 0 and K, M, G or T, each 1024 of the
/// one before; small letters and a B or iB at the end are taken too. Nothing for any other text, or
/// for less than a byte or 2^63 and more.
std::optional<std::uint64_t> parseSize(const std::string& text);

/// The bytes with the largest unit that leaves at least 1 of it, to a tenth: "1.5 GiB", "12 B".
std::string sizeText(std::uint64_t bytes);

}  // namespace drevintool
