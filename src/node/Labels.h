#pragma once

/// Labels of the enumeration controls; a control stores the index. Null-terminated, as the host
/// wants them.

namespace drevin {

extern const char* const DepthStyleENUM[];
extern const char* const FilmFormatENUM[];
extern const char* const WorldScaleENUM[];
extern const char* const FocusTypeENUM[];
extern const char* const FalloffTypeENUM[];
extern const char* const OutputTypeENUM[];
extern const char* const KernelTypeENUM[];

}  // namespace drevin
