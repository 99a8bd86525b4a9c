#pragma once

/// Sizes of the predefined film backs.

#include <array>

namespace drevin {

struct dvFilmFormat {
  double width;   ///< mm
  double height;  ///< mm
};

/// Indexed by the film format control; "Custom", the last choice, has no row. "35mm" and "Academy"
/// have the same size on purpose.
constexpr std::array<dvFilmFormat, 9> dvFilmFormats{{
    {22.0, 16.0},    // 35mm
    {22.0, 16.0},    // Academy
    {21.3, 17.8},    // Anamorphic
    {24.89, 18.67},  // Super 35mm
    {37.7, 25.17},   // Vista Vision
    {10.26, 7.49},   // 16mm
    {12.52, 7.41},   // Super 16mm
    {22.2, 14.8},    // APSC
    {17.3, 13.0},    // Four Thirds
}};

/// Index of "Custom": the artist types the film back.
constexpr int dvCustomFilmFormat = static_cast<int>(dvFilmFormats.size());

}  // namespace drevin
