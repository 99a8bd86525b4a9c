#pragma once

/// Whether a file that was just written is whole, found out by reading it.

#include <string>

namespace drevintool {

/// Of an OpenEXR file with one part: its header reads, its table of blocks has all of them, each
/// lies inside the file and stands for its own rows, and nothing is missing or left over at the end
/// of the file. Returns what is wrong, or an empty text. Pixels are not read.
std::string faultOfWrittenExr(const std::string& file);

/// Of a PNG file: its signature, its chunks one behind the other, and the last one at the end of
/// the file.
std::string faultOfWrittenPng(const std::string& file);

}  // namespace drevintool
