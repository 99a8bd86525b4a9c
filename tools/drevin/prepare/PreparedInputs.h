#pragma once

/// The pictures of a render as the node is to see them.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"
#include "prepare/PictureFixes.h"
#include "render/InputPictures.h"

namespace drevintool {

struct PreparedInputs {
  Picture image;                               ///< for input 0
  std::shared_ptr<embedded::DeepSource> deep;  ///< null: none
  std::vector<std::string> notes;              ///< what was changed, a line for each fix
  std::optional<float> background;             ///< the distance that background got, if any
};

/// The pictures with the fixes, in the depth channel and style that the node is set to; of the flat
/// picture beside a deep one only the colours. The pictures themselves, which channels that are not
/// rendered are taken from, stay as they are. Throws ToolError (InputUnreadable) if deep rows
/// cannot be read.
PreparedInputs prepareInputs(const InputPictures& pictures, const Node& node,
                             const PictureFixes& fixes);

}  // namespace drevintool
