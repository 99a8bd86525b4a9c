#pragma once

/// How a result is stored.

#include <OpenEXR/ImfCompression.h>

#include <optional>

namespace drevintool {

/// The type of the samples that the node makes; all others keep the type they have.
enum class ResultType {
  Float,
  Half,
  Input,  ///< that of the channel of the picture, and float for what it does not have
};

struct OutputFormat {
  std::optional<Imf::Compression> compression;  ///< none: the writer's choice
  ResultType type = ResultType::Input;
};

}  // namespace drevintool
