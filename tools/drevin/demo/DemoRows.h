#pragma once

/// Rows of a demo picture, worked on by all processors.

#include <functional>

namespace drevintool {

/// Calls work(row) for every row in [0, rows), each once, on several threads; `work` must touch its
/// own row alone. `threads` is the number of threads, 0 for as many as there are processors; at
/// most 32 run. Stops early and throws what `work` threw first, or ToolError (Interrupted or
/// Terminated) on a signal.
void forDemoRows(int rows, const std::function<void(int)>& work, unsigned threads = 0);

}  // namespace drevintool
