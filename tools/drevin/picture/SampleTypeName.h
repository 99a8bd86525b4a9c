#pragma once

/// The names of the types of samples in OpenEXR files.

#include <cstdint>

namespace drevintool {

/// Of the file's own number: "uint", "half" or "float".
inline const char* sampleTypeName(std::int32_t type) {
  return type == 0 ? "uint" : type == 1 ? "half" : "float";
}

}  // namespace drevintool
