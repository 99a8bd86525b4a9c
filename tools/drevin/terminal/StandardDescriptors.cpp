#include "terminal/StandardDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

namespace drevintool {

// Open for the wrong direction: what is lost must not look as if it had been written.
void occupyStandardDescriptors() noexcept {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest that is free is this one.
    open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace drevintool
