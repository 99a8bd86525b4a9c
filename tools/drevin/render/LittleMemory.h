#pragma once

/// Readiness for memory that runs out.

namespace drevintool {

/// To be called before the first thread begins. Where the address space is limited, threads share
/// heaps; and what an exception needs on its way is loaded while there is memory for it.
void prepareForLittleMemory();

}  // namespace drevintool
