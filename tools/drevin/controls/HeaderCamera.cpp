#include "controls/HeaderCamera.h"

#include <OpenEXR/ImfDoubleAttribute.h>
#include <OpenEXR/ImfFloatAttribute.h>
#include <OpenEXR/ImfIntAttribute.h>
#include <OpenEXR/ImfRationalAttribute.h>
#include <OpenEXR/ImfStringAttribute.h>
#include <OpenEXR/ImfVecAttribute.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "terminal/NumberText.h"

namespace drevintool {
namespace {

using Findings = std::map<std::string, CameraFinding>;

constexpr double kMillimetresPerInch = 25.4;

// Which attributes a value may come from, best first; their names are plain (see plainName), or
// stand as they are where that is asked for.
struct Spelling {
  const char* key;
  const char* name;
  double factor = 1.0;
  bool exactly = false;
};

const std::array<Spelling, 43> kSpellings = {{
    {"focalLength", "effectivefocallength"},
    {"focalLength", "focallength"},
    {"focalLength", "focallengthmm"},
    {"focalLength", "pinholefocallength"},
    {"focalLength", "nominalfocallength"},
    {"focalLength", "focal"},
    {"fStop", "aperture", 1.0, true},
    {"fStop", "fstop"},
    {"fStop", "fnumber"},
    {"fStop", "fnum"},
    {"fStop", "aperturefnumber"},
    {"focalPlane", "focusdistance"},
    {"focalPlane", "focaldistance"},
    {"focalPlane", "focusdist"},
    {"focalPlane", "focaldist"},
    {"focalPlane", "focalplane"},
    {"focalPlane", "focaldepth"},
    {"focalPlane", "targetdistance"},
    {"horizontalAperture", "horizontalaperture"},
    {"horizontalAperture", "haperture"},
    {"horizontalAperture", "aperturewidth"},
    {"horizontalAperture", "filmwidth"},
    {"horizontalAperture", "filmbackwidth"},
    {"horizontalAperture", "filmgatewidth"},
    {"horizontalAperture", "sensorwidth"},
    {"horizontalAperture", "sensorsizex"},
    {"horizontalAperture", "cameraAperture", 1.0, true},
    {"horizontalAperture", "horizontalfilmaperture", kMillimetresPerInch},
    {"horizontalAperture", "hfilmaperture", kMillimetresPerInch},
    {"verticalAperture", "verticalaperture"},
    {"verticalAperture", "vaperture"},
    {"verticalAperture", "apertureheight"},
    {"verticalAperture", "filmheight"},
    {"verticalAperture", "filmbackheight"},
    {"verticalAperture", "filmgateheight"},
    {"verticalAperture", "sensorheight"},
    {"verticalAperture", "sensorsizey"},
    {"verticalAperture", "verticalfilmaperture", kMillimetresPerInch},
    {"verticalAperture", "vfilmaperture", kMillimetresPerInch},
    {"horizontalAperture", "apertureh"},
    {"verticalAperture", "aperturev"},
    {"focalPlane", "focusdistanceworld"},
    {"fStop", "fstopnumber"},
}};

// Letters and digits of the last part of the name, in small letters, without "camera", "cam" or
// "lens" before them.
std::string plainName(const std::string& name) {
  std::string plain;
  for (const char c : name.substr(name.find_last_of("/:.") + 1)) {
    const auto letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) != 0) plain += static_cast<char>(std::tolower(letter));
  }
  for (const std::string prefix : {"camera", "cam", "lens"}) {
    if (plain.size() > prefix.size() && plain.rfind(prefix, 0) == 0) {
      return plain.substr(prefix.size());
    }
  }
  return plain;
}

// Degrees, over the width of the film.
bool isFieldOfView(const std::string& name) {
  constexpr std::array<const char*, 5> kNames = {"fov", "fieldofview", "hfov", "horizontalfov",
                                                 "horizontalfieldofview"};
  return std::find(kNames.begin(), kNames.end(), plainName(name)) != kNames.end();
}

// The number at the beginning of a text, behind "f/" and blanks, before a unit or nothing.
std::optional<double> numberIn(const std::string& text) {
  std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return std::nullopt;
  if (text.compare(begin, 2, "f/") == 0) begin += 2;
  const std::size_t end = std::min(text.find_first_not_of("+-.0123456789eE", begin), text.size());
  const bool unitBehind =
      end == text.size() || text.find_first_of("0123456789,;", end) == std::string::npos;
  return unitBehind ? parseNumber(text.substr(begin, end - begin)) : std::nullopt;
}

std::optional<double> numberOf(const Imf::Attribute& attribute) {
  if (const auto* number = dynamic_cast<const Imf::FloatAttribute*>(&attribute)) {
    // As it was written, not the float nearest to it.
    return tidyNumber(static_cast<double>(number->value()));
  }
  if (const auto* number = dynamic_cast<const Imf::DoubleAttribute*>(&attribute)) {
    return number->value();
  }
  if (const auto* number = dynamic_cast<const Imf::IntAttribute*>(&attribute)) {
    return number->value();
  }
  if (const auto* number = dynamic_cast<const Imf::RationalAttribute*>(&attribute)) {
    return static_cast<double>(number->value());
  }
  if (const auto* text = dynamic_cast<const Imf::StringAttribute*>(&attribute)) {
    return numberIn(text->value());
  }
  return std::nullopt;
}

void add(Findings& findings, const char* key, std::optional<double> value,
         const std::string& from) {
  constexpr double kMost = 1e30;
  if (!value || !(*value > 0.0) || !(*value < kMost)) return;
  findings.emplace(key, CameraFinding{*value, from});
}

void addSpellings(const Imf::Header& header, Findings& findings) {
  for (const Spelling& spelling : kSpellings) {
    for (auto it = header.begin(); it != header.end(); ++it) {
      const std::string name = it.name();
      if ((spelling.exactly ? name : plainName(name)) != spelling.name) continue;
      const std::optional<double> number = numberOf(it.attribute());
      if (number) add(findings, spelling.key, *number * spelling.factor, name);
    }
  }
}

// Of the standard, in metres; it comes before what renderers write.
void addFocus(const Imf::Header& header, double metresPerUnit, Findings& findings) {
  const auto it = header.find("focus");
  if (it == header.end()) return;
  const std::optional<double> metres = numberOf(it.attribute());
  if (!metres || !std::isfinite(*metres)) return;
  add(findings, "focalPlane", tidyNumber(*metres / metresPerUnit),
      "focus " + numberText(*metres) + " m");
}

void addSensor(const Imf::Header& header, const PictureSize& size, Findings& findings) {
  const auto* whole = header.findTypedAttribute<Imf::V2fAttribute>("sensorOverallDimensions");
  if (whole != nullptr) {
    add(findings, "horizontalAperture", tidyNumber(static_cast<double>(whole->value().x)),
        "sensorOverallDimensions");
    add(findings, "verticalAperture", tidyNumber(static_cast<double>(whole->value().y)),
        "sensorOverallDimensions");
  }
  const auto pitch = header.find("sensorPhotositePitch");
  const std::optional<double> micrometres =
      pitch == header.end() ? std::nullopt : numberOf(pitch.attribute());
  if (!micrometres) return;
  constexpr double kMillimetresPerMicrometre = 0.001;
  const std::string from = "sensorPhotositePitch " + numberText(*micrometres) + " um";
  add(findings, "horizontalAperture", *micrometres * kMillimetresPerMicrometre * size.width,
      from + " x " + std::to_string(size.width) + " pixels");
  add(findings, "verticalAperture", *micrometres * kMillimetresPerMicrometre * size.height,
      from + " x " + std::to_string(size.height) + " pixels");
}

// Some renderers write the focal length for a film of width 1, beside the field of view.
void dropFocalLengthInFilmWidths(const Imf::Header& header, Findings& findings) {
  constexpr double kLeastMillimetres = 2.0;
  const auto focal = findings.find("focalLength");
  if (focal == findings.end() || focal->second.value >= kLeastMillimetres) return;
  if (findFieldOfView(header)) findings.erase(focal);
}

}  // namespace

std::optional<CameraFinding> findFieldOfView(const Imf::Header& header) {
  constexpr double kStraight = 180.0;
  for (auto it = header.begin(); it != header.end(); ++it) {
    if (!isFieldOfView(it.name())) continue;
    const std::optional<double> degrees = numberOf(it.attribute());
    if (degrees && *degrees > 0.0 && *degrees < kStraight) {
      return CameraFinding{*degrees, it.name()};
    }
  }
  return std::nullopt;
}

std::string fieldOfViewText(const CameraFinding& view) {
  return view.from + " " + numberText(view.value) + " degrees";
}

void addFocalLength(const Imf::Header& header, Findings& findings) {
  const auto width = findings.find("horizontalAperture");
  const std::optional<CameraFinding> view = findFieldOfView(header);
  if (width == findings.end() || !view) return;
  constexpr double kRadians = 3.14159265358979323846 / 180.0;
  const double slope = std::tan(view->value * kRadians / 2.0);
  // With no more digits than the header's floats.
  const auto millimetres = static_cast<float>(width->second.value / (2.0 * slope));
  add(findings, "focalLength", tidyNumber(static_cast<double>(millimetres)),
      fieldOfViewText(*view));
}

Findings findHeaderCamera(const Imf::Header& header, const PictureSize& size,
                          double metresPerUnit) {
  Findings findings;
  addFocus(header, metresPerUnit, findings);
  addSpellings(header, findings);
  addSensor(header, size, findings);
  dropFocalLengthInFilmWidths(header, findings);
  return findings;
}

void addPictureShape(const PictureSize& size, Findings& findings) {
  const auto width = findings.find("horizontalAperture");
  if (width == findings.end() || size.width <= 0 || !(size.pixelAspect > 0.0)) return;
  const double shape = static_cast<double>(size.height) / (size.width * size.pixelAspect);
  add(findings, "verticalAperture", tidyNumber(width->second.value * shape),
      width->second.from + " and the picture's shape");
}

}  // namespace drevintool
