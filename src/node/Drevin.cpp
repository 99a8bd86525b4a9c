#include "node/Drevin.h"

#include <array>

#include "DDImage/CameraOp.h"
#include "DDImage/DeepOp.h"
#include "DDImage/Interest.h"
#include "DDImage/Knob.h"
#include "defocus/PassValue.h"
#include "node/ControlKnobs.h"
#include "node/EnablingRules.h"
#include "node/FilmFormats.h"
#include "node/Version.h"

namespace drevin {

using DD::Image::CameraOp;
using DD::Image::ChannelMask;
using DD::Image::ChannelSet;
using DD::Image::DeepOp;
using DD::Image::Hash;
using DD::Image::Interest;
using DD::Image::Knob;
using DD::Image::Op;
using DD::Image::Row;

namespace {

constexpr const char* className = "Drevin";

constexpr std::array<const char*, dvInput::count> inputLabels{"Input", "Kernel", "Camera",
                                                              "Deep Input", "Mattes"};

Op* build(Node* node) {
  return new Drevin(node);
}

const Op::Description description(className, build);

/// Fills the film back from the chosen format, which the artist then cannot type.
void fillFilmBack(const Op& op, int filmFormat) {
  if (filmFormat < 0 || filmFormat >= dvCustomFilmFormat) return;
  const dvFilmFormat& format = dvFilmFormats[static_cast<std::size_t>(filmFormat)];
  Knob* width = op.knob("apertureWidth");
  Knob* height = op.knob("apertureHeight");
  if (width != nullptr) width->set_value(format.width);
  if (height != nullptr) height->set_value(format.height);
}

void readKnob(const Op& op, const char* name, float& value) {
  Knob* knob = op.knob(name);
  if (knob != nullptr) value = static_cast<float>(knob->get_value());
}

}  // namespace

Drevin::Drevin(Node* node) : Iop(node) {
  inputs(dvInput::count);
}

Drevin::~Drevin() = default;

void Drevin::knobs(DD::Image::Knob_Callback f) {
  makeControlKnobs(f, settings_);
  applyRealWorldLensRule(*this, settings_.realWorldLens);
  applyFilmFormatRule(*this, settings_.filmFormat == dvCustomFilmFormat);
  applySliceOverrideRule(*this, settings_.overrideNearAndFar);
}

int Drevin::knob_changed(Knob* knob) {
  if (knob == nullptr) return Op::knob_changed(knob);
  // Settings may lag behind the control here, so its own value is read.
  if (knob->is("filmFormat")) {
    const int filmFormat = static_cast<int>(knob->get_value());
    const bool custom = filmFormat == dvCustomFilmFormat;
    applyFilmFormatRule(*this, custom);
    if (!custom) fillFilmBack(*this, filmFormat);
    readKnob(*this, "apertureWidth", settings_.apertureWidth);
    readKnob(*this, "apertureHeight", settings_.apertureHeight);
    return 1;
  }
  if (knob->is("realWorldLens")) {
    applyRealWorldLensRule(*this, knob->get_value() != 0.0);
    return 1;
  }
  if (knob->is("overrideNearAndFarForSlices")) {
    applySliceOverrideRule(*this, knob->get_value() != 0.0);
    return 1;
  }
  return Op::knob_changed(knob);
}

bool Drevin::test_input(int input, Op* op) const {
  if (input == dvInput::camera) return dynamic_cast<CameraOp*>(op) != nullptr;
  if (input == dvInput::deep) return dynamic_cast<DeepOp*>(op) != nullptr;
  return dynamic_cast<Iop*>(op) != nullptr;
}

void Drevin::set_input(int input, Op* op, int inputOfOp, int offset) {
  if (input == dvInput::camera) {
    enableCameraControls(*this, dynamic_cast<CameraOp*>(op) == nullptr);
  }
  Op::set_input(input, op, inputOfOp, offset);
}

void Drevin::append(Hash& hash) {
  hash.append(dvVersionMajor);
  hash.append(dvVersionMinor);
  hash.append(dvVersionPatch);
}

Op* Drevin::default_input(int input) const {
  return input == dvInput::image ? Iop::default_input(input) : nullptr;
}

const char* Drevin::node_help() const {
  return className;
}

const char* Drevin::input_label(int input, char* /*buffer*/) const {
  const bool known = input >= 0 && input < dvInput::count;
  return known ? inputLabels[static_cast<std::size_t>(input)] : "";
}

const char* Drevin::Class() const {
  return className;
}

const DD::Image::MetaData::Bundle& Drevin::_fetchMetaData(const char* /*key*/) {
  return settings_.metadata;
}

void Drevin::_open() {
  try {
    initialize();
    preparePicture();
  } catch (...) {
    freeKernels();
    throw;
  }
  // What was cut short must not be taken for whole.
  if (openingAborted_) freeKernels();
}

void Drevin::_close() {
  freeKernels();
}

void Drevin::engine(int y, int x, int r, ChannelMask channels, Row& out) {
  ChannelSet read(channels);
  in_channels(read);
  if (aborted()) return;
  const Interest interest(input0(), read, false, nullptr, 1.0F);
  const bool deep = settings_.deepInput;
  switch (static_cast<dvOutputType>(settings_.outputType)) {
    case dvOutputType::FilterShape:
      kernelVisualization(y, x, r, channels, out);
      break;
    case dvOutputType::FocalDistance:
    case dvOutputType::FocusMatte:
      deep ? deepDepthVisualization(y, x, r, channels, out)
           : depthVisualization(y, x, r, channels, out);
      break;
    case dvOutputType::DefocusedImage:
    case dvOutputType::LensBloom:
      deep ? defocusDeepInput(y, x, r, channels, out) : defocus(y, x, r, channels, out);
      break;
  }
}

}  // namespace drevin
