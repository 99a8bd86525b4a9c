#include "node/Controls.h"

#include "node/Labels.h"

namespace drevin {

namespace {

using Kind = dvControlKind;
using S = DrevinSettings;

constexpr int noInput = -1;
constexpr int imageInput = 0;
constexpr int mattesInput = 4;

constexpr dvControlRange noRange{};

constexpr dvControlRange slider(double min, double max) {
  return {dvControlRange::Kind::Slider, min, max};
}

constexpr dvControlRange forced(double min, double max) {
  return {dvControlRange::Kind::Forced, min, max};
}

dvControl tab(const char* label) {
  return {Kind::Tab, nullptr, label, std::monostate{}, noRange, dvUnit::None,
          nullptr,   noInput, false, nullptr};
}

dvControl text(const char* label) {
  return {Kind::Text, nullptr, label, std::monostate{}, noRange, dvUnit::None,
          nullptr,    noInput, false, nullptr};
}

dvControl floating(const char* name, const char* label, float S::*field, dvControlRange range,
                   dvUnit unit, const char* tooltip) {
  return {Kind::Float, name, label, field, range, unit, nullptr, noInput, false, tooltip};
}

dvControl integer(const char* name, const char* label, int S::*field, dvControlRange range,
                  dvUnit unit, const char* tooltip) {
  return {Kind::Int, name, label, field, range, unit, nullptr, noInput, false, tooltip};
}

dvControl boolean(const char* name, const char* label, bool S::*field, bool startsLine,
                  const char* tooltip) {
  return {Kind::Bool,   name,    label,   field,      noRange,
          dvUnit::None, nullptr, noInput, startsLine, tooltip};
}

dvControl enumeration(const char* name, const char* label, int S::*field,
                      const char* const* choices, const char* tooltip) {
  return {Kind::Enumeration, name,    label,   field, noRange,
          dvUnit::None,      choices, noInput, false, tooltip};
}

dvControl matte(const char* name, const char* label, DD::Image::Channel S::*field, bool startsLine,
                const char* tooltip) {
  return {Kind::InputChannel, name,    label,       field,      noRange,
          dvUnit::None,       nullptr, mattesInput, startsLine, tooltip};
}

}  // namespace

const std::array<dvControl, dvControlCount> dvControls{{
    tab("Drevin"),
    text("Version"),
    {Kind::ChannelMask, "bokehChannels", "Bokeh Channels", &S::bokehChannels, noRange, dvUnit::None,
     nullptr, imageInput, false, nullptr},
    {Kind::InputOnlyChannel, "depthChannel", "Depth Channel", &S::depthChannel, noRange,
     dvUnit::None, nullptr, imageInput, false, nullptr},
    enumeration("outputType", "Output Type", &S::outputType, OutputTypeENUM,
                "Bokeh - the actual Bokeh effect with lens bloom if any.\n"
                "Lens Bloom - just the bloom effect.\n"
                "Focal Distance Visualization - preview the focal distance values.\n"
                "Filter Shape - preview the shape of the kernel.\n"
                "Focus Mattes - Front/Back mattes for the focus."),
    enumeration("focusOutput", "Focus Region Output", &S::focusOutput, FocusTypeENUM,
                "Whether the front, back or all regions should be output"),
    floating("multiplier", "Multiplier", &S::multiplier, slider(1, 256), dvUnit::Pixels, nullptr),
    floating("frontmultiplier", "Front Multiplier", &S::frontMultiplier, slider(1, 256),
             dvUnit::None, nullptr),
    floating("backmultiplier", "Back Multiplier", &S::backMultiplier, slider(1, 256), dvUnit::None,
             "Used to increase the depth values resulting in a higher blur."),
    enumeration("depthStyle", "Depth Style", &S::depthStyle, DepthStyleENUM,
                "Real = real world values, 1/z = values that come out of Scanline renderer"),
    floating("focalPlane", "Focal Plane", &S::focalPlane, slider(1, 256), dvUnit::Scene,
             "The plane in focus."),
    floating("focusRegionSize", "Focus Region Size", &S::focusRegionSize, slider(1, 256),
             dvUnit::Scene, "The size of the region in focus."),
    enumeration("focusRegionFalloff", "Focus Region Falloff", &S::focusRegionFalloff,
                FalloffTypeENUM, "Falloff of the bokeh effect across the region."),
    matte("defocusMatteChannel", "Defocus Matte Channel", &S::defocusMatteChannel, false,
          "A channel in the Mattes input that is used to modulate the defocus level."),
    boolean("normalizeVisualization", "Normalize Visualization", &S::normalizeVisualization, true,
            "Normalize the depth visualization output."),
    boolean("integrateFrontAndBackSeperately", "Integrate Deep Front and Back Separately",
            &S::integrateFrontAndBackSeparately, true,
            "In some cases artifacts can arise from integrating all the slices together, this will "
            "seperate the front and back focus areas and integrate them seperate to help avoid "
            "these."),
    tab("Lens"),
    boolean("realWorldLens", "Real World Lens Simulation", &S::realWorldLens, false,
            "Match the defocusing effects of a real world lens using the below parameters."),
    floating("focalLength", "Focal Length", &S::focalLength, forced(0, 300), dvUnit::Millimetres,
             "The camera's focal length."),
    floating("fStop", "Aperture", &S::fStop, noRange, dvUnit::None, "The camera's aperture/fstop."),
    enumeration("worldScale", "World Scale", &S::worldScale, WorldScaleENUM,
                "Define the scale of the world, this directly affects the real world camera "
                "settings."),
    floating("worldScaleMultiplier", "World Scale Multiplier", &S::worldScaleMultiplier, noRange,
             dvUnit::None,
             "This can be used to adjust the current world scale, as an example: if your scene "
             "units are 10cm then you would set world scale to cm and set this to 10."),
    enumeration("filmFormat", "Film Format", &S::filmFormat, FilmFormatENUM,
                "Desired predefined film back."),
    floating("apertureWidth", "Aperture Width", &S::apertureWidth, noRange, dvUnit::Millimetres,
             "Used for a custom film back size, this is the width of the frames format in mm."),
    floating("apertureHeight", "Aperture Height", &S::apertureHeight, noRange, dvUnit::Millimetres,
             "Used for a custom film back size, this is the height of the frames format in mm."),
    tab("Optical Artifacts"),
    floating("bloom", "Bloom", &S::bloom, slider(0, 1), dvUnit::None,
             "The level of lens blooming."),
    floating("bloomCurvature", "Curvature", &S::bloomCurvature, forced(0, 4), dvUnit::None,
             "The curvature of the lens."),
    floating("bloomThreshold", "Bloom Threshold", &S::bloomThreshold, slider(0, 1), dvUnit::None,
             "The point at which the input colour drives the bloom."),
    matte("bloomMatteChannel", "Bloom Matte Channel", &S::bloomMatteChannel, false,
          "A channel in the Mattes input that is used to modulate the bloom level."),
    floating("kSphAbb", "Spherical Aberration", &S::sphericalAberration, forced(-1, 1),
             dvUnit::None, "The amount of spherical aberration present on the lens."),
    floating("kChrAbb", "Chromic Aberration", &S::chromaticAberration, slider(-10, 10),
             dvUnit::None, "The amount of chromic aberration present on the lens."),
    {Kind::Colour, "kChrAbbOff", "Chromic Aberration Offset", &S::chromaticAberrationOffset,
     noRange, dvUnit::None, nullptr, noInput, false,
     "A spectral offset representing the chromic abberation effect of the lens."},
    matte("chromicAberrationMatteChannel", "Chromic Aberration Matte Channel",
          &S::chromaticAberrationMatteChannel, false,
          "A channel in the Mattes input that is used to modulate the chromic aberration level."),
    tab("Kernel"),
    enumeration("kernelType", "Kernel Type", &S::kernelType, KernelTypeENUM,
                "Input - use a second input image as the shape.\n"
                "Circular - a clean round lens shape.\n"
                "Aperture Blades - more geometric result due to the number of aperture blades."),
    integer("max_kernelsize", "Maximum Kernel Size", &S::maxKernelSize, forced(1, 256),
            dvUnit::Pixels,
            "A limit on the size of the blur - used to speed up computations if needed."),
    boolean("expandBBoxToMaxKernelSize", "Expand Bounding Box To Max Kernel Size",
            &S::expandBBoxToMaxKernelSize, false,
            "Make sure the output bounding box has been expanded to accommodate the maximum kernel "
            "size."),
    matte("missingKernelChannel", "Missing Kernel Channel", &S::missingKernelChannel, true,
          "This channel will be used from the input kernel image if the required channel is "
          "missing."),
    floating("kAspectRatio", "AspectRatio", &S::aspectRatio, slider(0, 2), dvUnit::None,
             "Controls the aspect ratio of the kernel, useful for anamorphic Bokeh."),
    floating("kSoftness", "Softness", &S::softness, noRange, dvUnit::None,
             "How soft the kernel should be 0 is hard, 1 is soft."),
    integer("kNumSides", "Blade Count", &S::numSides, forced(3, 16), dvUnit::None,
            "The number of blades in the aperture."),
    floating("kCurvature", "Curvature", &S::bladeCurvature, noRange, dvUnit::None,
             "Controls the curvature of the aperture blades."),
    floating("kRotation", "Rotation", &S::rotation, slider(0, 1), dvUnit::Turns,
             "Rotate the blades."),
    tab("Corrective Slices"),
    integer("correctiveSlices", "Number of Corrective Slices", &S::correctiveSlices, forced(1, 256),
            dvUnit::None,
            "Corrective slices are used to improve layering results, use this to specify the "
            "desired number.\n"
            " 1 - default\n"
            " 2 - seperate foreground and background\n"
            " 3 or more - equally divide up the space into the number of slices specified"),
    boolean("overrideNearAndFarForSlices", "Override Near/Far", &S::overrideNearAndFar, true,
            "Customize the viewing volume for corrective slice purposes when the slice count is "
            "greater than 2."),
    {Kind::FloatPair, "depthSlicesNearAndFar", "Near and Far", &S::slicesNearAndFar, noRange,
     dvUnit::Scene, nullptr, noInput, false,
     "Set the values used to override the near and far plane for corrective slice purposes."},
}};

}  // namespace drevin
