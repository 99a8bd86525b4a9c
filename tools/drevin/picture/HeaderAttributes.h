#pragma once

/// What of an input file's header a result keeps.

#include <OpenEXR/ImfHeader.h>

namespace drevintool {

/// The first flat part's header; `multiPart` if there were several.
struct HeaderAttributes {
  Imf::Header header;
  bool multiPart = false;
};

}  // namespace drevintool
