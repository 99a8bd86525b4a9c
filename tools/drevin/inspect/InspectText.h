#pragma once

/// The inspection of a file for people.

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace drevintool {

/// Some lines, the first with the file's name, of what inspectFile says.
std::string inspectText(const nlohmann::ordered_json& file);

}  // namespace drevintool
