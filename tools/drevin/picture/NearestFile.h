#pragma once

/// The file that was probably meant, for messages about a file that does not exist.

#include <string>

namespace drevintool {

/// "; did you mean FOLDER/NAME?" with the file of the same folder whose name is nearest, if there
/// is one and the path itself leads nowhere; else nothing. A name with the same extension comes
/// near by what stands before it (see nearestName), any other only if that is the same. Of a name
/// with numbers only one with the same numbers is meant, and none where the folder has other
/// frames of its sequence: other frames are of no help.
std::string nearestFileHint(const std::string& path);

/// The same for a sequence of which no frame is there, with the pattern of another one in that
/// folder: "; did you mean FOLDER/NAME.####.exr?". `path` is one of the frames.
std::string nearestSequenceHint(const std::string& path);

}  // namespace drevintool
