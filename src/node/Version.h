#pragma once

/// The node's version: shown on its panel and part of its hash.

namespace drevin {

constexpr int dvVersionMajor = 1;
constexpr int dvVersionMinor = 4;
constexpr int dvVersionPatch = 6;

}  // namespace drevin
