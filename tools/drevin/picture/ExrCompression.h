#pragma once

/// The ways in which OpenEXR packs pixels.

#include <OpenEXR/ImfCompression.h>

#include <optional>
#include <string>

namespace drevintool {

/// None, rle, zips, zip, piz, pxr24, b44, b44a, dwaa or dwab, in lower case.
std::optional<Imf::Compression> compressionNamed(const std::string& name);

/// The name of a compression by the file's own number; "unknown" for any other number.
std::string compressionName(int number);

/// The names of all of them, "none, rle, ...", for messages.
std::string compressionList();

/// Whether pixels of every type come out bit for bit as they went in: none, rle, zips, zip, piz.
bool keepsBits(Imf::Compression compression);

}  // namespace drevintool
