#pragma once

/// What the terminal behind standard error can do.

namespace drevintool {

/// Whether a terminal of that TERM obeys codes for colours and for drawing over a line: it is there
/// and not "dumb". Null where the environment has none.
bool obeysCodes(const char* term);

/// Whether standard error is a terminal that can be drawn on; else it gets whole lines only.
bool drawsOnError();

}  // namespace drevintool
