#include "terminal/StandardError.h"

#include <cstdio>

namespace drevintool {

void writeStandardError(const std::string& text) noexcept {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace drevintool
