#include "arguments/FormatOptions.h"

#include <CLI/CLI.hpp>

#include "arguments/OptionChecks.h"
#include "picture/ChannelNames.h"
#include "picture/ExrCompression.h"
#include "terminal/NearestName.h"

namespace drevintool {
namespace {

Imf::Compression parseCompression(const std::string& text) {
  const std::optional<Imf::Compression> compression = compressionNamed(text);
  if (!compression) {
    failUsage("--compression " + text + ": give one of " + compressionList() +
              nearestHint(text, splitList(compressionList())));
  }
  return *compression;
}

ResultType parseType(const std::string& text) {
  if (text == "float") return ResultType::Float;
  if (text == "half") return ResultType::Half;
  if (text == "keep") return ResultType::Input;
  failUsage("--type " + text + ": give half, float or keep" +
            nearestHint(text, {"half", "float", "keep"}));
}

}  // namespace

void FormatOptions::addTo(CLI::App& app) {
  app.add_option("--compression", compression_,
                 "How an EXR is packed: " + compressionList() +
                     " (default: as the input, or zip where that loses bits)")
      ->type_name("NAME");
  app.add_option("--type", type_,
                 "The type of blurred channels in an EXR: keep that of the input (default), float "
                 "or half")
      ->type_name("NAME");
}

OutputFormat FormatOptions::checked(const CLI::App& app) const {
  OutputFormat format;
  if (given(app, "--compression")) format.compression = parseCompression(compression_);
  if (given(app, "--type")) format.type = parseType(type_);
  return format;
}

}  // namespace drevintool
