#include "node/Labels.h"

namespace drevin {

const char* const DepthStyleENUM[] = {"Real", "1/z", nullptr};

const char* const FilmFormatENUM[] = {"35mm",         "Academy", "Anamorphic", "Super 35mm",
                                      "Vista Vision", "16mm",    "Super 16mm", "APSC",
                                      "Four Thirds",  "Custom",  nullptr};

const char* const WorldScaleENUM[] = {"mm", "cm", "m", "inches", "feet", nullptr};

const char* const FocusTypeENUM[] = {"Both", "Front", "Back", nullptr};

const char* const FalloffTypeENUM[] = {"Linear", "Quadratic", nullptr};

const char* const OutputTypeENUM[] = {
    "Defocused Image", "Lens Bloom",  "Focal Distance Visualization",
    "Filter Shape",    "Focus Matte", nullptr};

const char* const KernelTypeENUM[] = {"Input", "Circular", "Aperture Blades", nullptr};

}  // namespace drevin
