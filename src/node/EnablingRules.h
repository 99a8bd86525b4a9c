#pragma once

/// Which controls are greyed out by the values of others.

namespace DD {
namespace Image {
class Op;
}
}  // namespace DD

namespace drevin {

/// Controls that a connected camera drives.
void enableCameraControls(const DD::Image::Op& op, bool enable);

/// The artistic multiplier and falloff have no meaning for a thin lens.
void applyRealWorldLensRule(const DD::Image::Op& op, bool realWorldLens);

/// The film back is typed only for the "Custom" format.
void applyFilmFormatRule(const DD::Image::Op& op, bool custom);

/// Near and far are typed only when overridden.
void applySliceOverrideRule(const DD::Image::Op& op, bool overridden);

}  // namespace drevin
