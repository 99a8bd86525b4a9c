#pragma once

/// Which instruction set the vector code uses.

#include <string>

namespace drevin {

/// Ascending: a processor that has one has those before it. Other processors than x86-64 have the
/// baseline alone, which the compiler vectorises as it can.
enum class dvSimdLevel { Baseline, Avx2, Avx512 };

/// The best level of this processor.
dvSimdLevel supportedSimdLevel();

/// The level in use: the one last set, else the one that the environment variable DREVIN_SIMD named
/// ("baseline", "avx2" or "avx512") when it was first asked for, else the best. Never above the
/// best. Safe from any thread.
dvSimdLevel simdLevel();
/// Sets the level for the whole process, for tests. Not while a frame is made.
void setSimdLevel(dvSimdLevel level);

/// "baseline", "avx2" or "avx512".
std::string simdLevelName(dvSimdLevel level);

}  // namespace drevin
