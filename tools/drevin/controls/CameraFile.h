#pragma once

/// A camera from a JSON file.

#include <cstdint>
#include <map>
#include <string>

#include "controls/ControlCurve.h"

namespace drevintool {

/// Of a camera file; the keys of a long shot take a hundredth of it.
constexpr std::uint64_t kMostCameraBytes = std::uint64_t{4} << 20;

/// The curves of the keys that the file has, by the names of cameraKeys. The file is one object;
/// each value is a number, an object of numbers by frame ({"1": 2.7, "48": 24}) or an array of
/// frame and number ([[1, 2.7], [48, 24]]). Between frames values run in lines; outside they are
/// held. Throws ToolError (InputUnreadable) with one line that names the file, and the key or the
/// line: also for a key that is given twice, for what nests deeper than that, and for a file of
/// more than kMostCameraBytes.
std::map<std::string, ControlCurve> readCameraFile(const std::string& file);

}  // namespace drevintool
