#pragma once

/// The procedural apertures: a disc, or blades, with a soft edge and spherical aberration.

namespace drevin {

/// Where the pixels of the hero kernel come from.
enum class dvKernelType { Input = 0, Circular = 1, ApertureBlades = 2 };

/// The settings of an aperture. Softness, curvature and the like are used as they stand; none of
/// them is limited here.
struct dvApertureShape {
  dvKernelType type = dvKernelType::Circular;
  float aspectRatio = 1.0F;          ///< above 1 narrows the shape, below 1 lowers it
  float softness = 0.1F;             ///< 0 hard edge, 1 a paraboloid
  int numSides = 6;                  ///< number of blades
  float bladeCurvature = 0.1F;       ///< 1 round blades, 0 the deepest scallop
  float rotation = 0.0F;             ///< of the blades, in whole turns
  float sphericalAberration = 0.0F;  ///< above 0 hollows the centre, below 0 darkens the rim
};

/// Slope of the soft edge: 1 / softness, and just below 1000 for a softness under 0.001 (0 and
/// negative included). NaN stays NaN, which apertureValue() takes as a hard edge.
float softnessGain(float softness);

/// Transmission of the aperture at one pixel, the same for every channel.
///
///   dx = column + 0.5 - h,  dy = row + 0.5 - h
///   C  = max(0, 1 - (|dx|'^2 + |dy|'^2) / h^2)                   ' with the aspect ratio
///   B  = C                                                       disc
///   B  = max(0, 1 - (sin(pi t) * (1 - c) / N + (dx'^2 + dy'^2) / h^2))   blades
///   v  = min(1, B * g) - (k > 0 ? k C : |k| (1 - C)),  limited to [0, 1]
///
///   h     half the side of the kernel   px      0.5 * side
///   a     aspect ratio                          dx * a where a > 1, dy * (1 / a) where a < 1
///   t     place on a blade              [0, 1)  angle / (1/N turn), remainder truncated
///   c, N  blade curvature, blade count
///   g     softnessGain()
///   k     spherical aberration                  its C is the disc's also for blades
///
/// A blade bows inward by up to (1 - c) / N of the squared radius at its middle and meets its
/// neighbours at full radius.
///
/// Fails to: a shape term that is not below its bound is 0, the edge term B * g is 1 when it is
/// NaN; a NaN aberration counts as 0. NaN only for an infinite aberration where C makes it 0 *
/// infinity. Order: float, left to right. Laws: curvature 1 gives the disc; a rotation by 1/N
/// changes nothing. Tests: ApertureShape_test.cpp
float apertureValue(const dvApertureShape& shape, float gain, float halfSide, float halfSideSquared,
                    int column, int row);

}  // namespace drevin
