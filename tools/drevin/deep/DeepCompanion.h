#pragma once

/// The flat picture on input 0 beside a deep one.

#include "deep/DeepExrSource.h"
#include "picture/Picture.h"

namespace drevintool {

/// The deep picture's windows and attributes, without channels.
Picture emptyPicture(const DeepExrSource& deep);

/// Black R, G, B and A over the deep picture's box, with its windows and attributes. Throws
/// ToolError (InputUnreadable) with one line that names the file if there is no memory for it.
Picture blackPicture(const DeepExrSource& deep);

/// Gives a picture black R, G, B and A where it lacks them: the samples' colours need channels of
/// the picture to go to.
void addBlackColours(Picture& picture);

/// Throws ToolError (InputUnreadable) with one line that names both files and their sizes if their
/// display windows differ in width or height.
void checkSameFormat(const Picture& picture, const DeepExrSource& deep);

/// The picture with the names, but no samples, of the depths that a node with a deep input can take
/// besides the picture's own channels.
Picture withDeepDepths(Picture picture);

}  // namespace drevintool
