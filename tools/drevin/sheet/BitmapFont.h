#pragma once

/// Letters as dots, for captions. Outline fonts would need a file of the user's machine, so that a
/// sheet would look different, or have no text, elsewhere.

#include <string>
#include <string_view>

namespace drevintool {

/// Dots of a letter: seven rows above the base line and two below it.
constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 9;
/// From one letter to the next, and from one line to the next.
constexpr int kGlyphAdvance = 6;
constexpr int kLineAdvance = 11;

/// Whether the letter has a dot there; rows run downward. What is not printable ASCII is drawn as a
/// question mark; outside the letter there is none.
bool glyphHasDot(char character, int column, int row);

/// UTF-8 with one '?' for each character that the letters lack.
std::string printableText(const std::string& text);

}  // namespace drevintool
