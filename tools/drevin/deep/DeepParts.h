#pragma once

/// Which part of a file is the deep picture that is meant.

#include <cstddef>
#include <string>

#include "picture/ExrHeaderScan.h"

namespace drevintool {

/// The number of the first deep part, of that name and of that view where they are not empty.
/// Throws ToolError (InputUnreadable) with one line that names the file: with the deep parts that
/// there are if none is the one that is meant, or with the option for flat pictures if there is
/// none at all.
std::size_t chooseDeepPart(const ExrFacts& facts, const std::string& path, const std::string& name,
                           const std::string& view);

}  // namespace drevintool
