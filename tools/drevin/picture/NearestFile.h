#pragma once

/// The file that was probably meant, for messages about a file that does not exist.

#include <string>

namespace drevintool {

/// "; did you mean FOLDER/NAME?" with the file of the same folder whose name is nearest, if there
/// is one and the path itself leads nowhere; else nothing. A name with the same extension comes
/// near by what stands before it (see nearestName), any other only if that is the same. Names that
/// differ in digits alone do not count: they are other frames.
std::string nearestFileHint(const std::string& path);

}  // namespace drevintool
