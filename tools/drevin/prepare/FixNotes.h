#pragma once

/// What is told of fixes.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "prepare/PictureFixes.h"

namespace drevintool {

/// A line that begins with the option, for `count` of `all` pixels, or samples (`what`). `depth` is
/// what was given to those without depth; nothing if the picture has no depth at all. `ordinary` is
/// a depth that is background in this picture, though not in others.
std::string backgroundNote(const BackgroundFix& fix, std::optional<float> depth,
                           std::uint64_t count, std::uint64_t all, const std::string& what,
                           std::optional<float> ordinary = {});
std::string edgesNote(std::uint64_t count, std::uint64_t all);
std::string firefliesNote(float most, std::uint64_t count, std::uint64_t all,
                          const std::string& what);
/// Where `what` (the picture) has not all of R, G and B as numbers that can be dimmed.
std::string noColoursNote(float most, const std::string& what);

}  // namespace drevintool
