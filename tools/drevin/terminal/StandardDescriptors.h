#pragma once

namespace drevintool {

/// Takes the places of standard input, output and error that were closed, so that no file which is
/// opened later gets one of them, and with it what is printed. Reading and writing there fails as
/// it did before.
void occupyStandardDescriptors() noexcept;

}  // namespace drevintool
