#pragma once

/// What a picture file holds, as far as it matters for a defocus.

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "inspect/BlurPrediction.h"

namespace drevintool {

/// Reads the whole file: its parts, its format, its channels by layer with the range of each over
/// the pixels of its part, the depth that a render with these changes takes and what it is like,
/// the samples of its first deep part, and the camera that its header tells. With `predict` also
/// the largest blurs that such a render has, and its kernels. What there is not is null. Without
/// `asked` the controls are taken as the node makes them, and nothing is predicted. Throws
/// ToolError (InputUnreadable, with one line that names the file, and what changes of controls
/// throw).
nlohmann::ordered_json inspectFile(const std::string& path, const AskedRender* asked, bool predict);

}  // namespace drevintool
