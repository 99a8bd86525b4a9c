#include "terminal/OneLine.h"

#include <cstddef>

namespace drevintool {
namespace {

// Length of the well-formed UTF-8 sequence at `at`, or 0.
std::size_t sequenceLength(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(at);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || at + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0U) != 0x80U) return 0;
  }
  const unsigned second = byte(at + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second >= 0xA0;
  const bool beyond = lead == 0xF4 && second >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

}  // namespace

std::string oneLine(const std::string& text) {
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = sequenceLength(text, at);
    const auto c = static_cast<unsigned char>(text[at]);
    if (c == '\n' || c == '\r' || c == '\t') {
      line += ' ';
    } else if (length == 0 || c < 0x20 || c == 0x7F) {
      line += '?';
    } else {
      line += text.substr(at, length);
    }
    at += length == 0 ? 1 : length;
  }
  return line;
}

}  // namespace drevintool
