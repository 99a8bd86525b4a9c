#pragma once

/// Channel numbers and their names.

#include "DDImage/Export.h"

namespace DD {
namespace Image {

/// Number of a channel. Numbers above the named ones are given to names at run time, in the order
/// in which they are first asked for.
enum Channel : int {
  Chan_Black = 0,  ///< "none": reads 0 and is never in a set
  Chan_Red = 1,
  Chan_Green = 2,
  Chan_Blue = 3,
  Chan_Alpha = 4,
  Chan_Z = 5,
  Chan_DeepFront = 6,
  Chan_DeepBack = 7,
  Chan_Last = 1023
};

/// Name as in "rgba.red" or "depth.Z"; "none" for Chan_Black and for numbers without a name. The
/// pointer stays valid for the life of the process.
DD_EXPORT const char* getName(Channel channel);

/// The part of the name before its last dot; "" if there is none.
DD_EXPORT const char* getLayerName(Channel channel);

/// The channel of that full name, made if it is new. Chan_Black for "none", for an empty name, and
/// when all 1023 numbers are taken. Safe from any thread.
DD_EXPORT Channel getChannel(const char* name, bool sort = true);

/// The channel of that full name, or Chan_Black if there is none yet. Safe from any thread.
DD_EXPORT Channel findChannel(const char* name);

}  // namespace Image
}  // namespace DD
