#include "node/EnablingRules.h"

#include <initializer_list>

#include "DDImage/Knob.h"
#include "DDImage/Op.h"

namespace drevin {

namespace {

void enableKnobs(const DD::Image::Op& op, std::initializer_list<const char*> names, bool enable) {
  for (const char* name : names) {
    DD::Image::Knob* knob = op.knob(name);
    if (knob != nullptr) knob->enable(enable);
  }
}

}  // namespace

void enableCameraControls(const DD::Image::Op& op, bool enable) {
  enableKnobs(op, {"focalPlane", "focalLength", "fStop", "apertureWidth", "apertureHeight"},
              enable);
}

void applyRealWorldLensRule(const DD::Image::Op& op, bool realWorldLens) {
  enableKnobs(op, {"multiplier", "focusRegionFalloff"}, !realWorldLens);
}

void applyFilmFormatRule(const DD::Image::Op& op, bool custom) {
  enableKnobs(op, {"apertureWidth", "apertureHeight"}, custom);
}

void applySliceOverrideRule(const DD::Image::Op& op, bool overridden) {
  enableKnobs(op, {"depthSlicesNearAndFar"}, overridden);
}

}  // namespace drevin
