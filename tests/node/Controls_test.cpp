#include "node/Controls.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>

#include "node/ControlTable.h"
#include "node/FilmFormats.h"
#include "node/Labels.h"
#include "node/NodeBench.h"

namespace drevin::test {
namespace {

using DD::Image::Knob;

TEST(Controls, panel_hasThe48InOrder) {
  NodeBench bench;
  const auto& knobs = bench.node().knobs();
  ASSERT_EQ(knobs.size(), 48U);
  for (std::size_t i = 0; i < knobs.size(); ++i) {
    const Knob& knob = *knobs[i];
    const ExpectedControl& expected = expectedControls[i];
    EXPECT_EQ(knob.kind(), expected.kind) << i;
    EXPECT_EQ(knob.name(), expected.name) << i;
    EXPECT_EQ(knob.label(), expected.label) << i;
    EXPECT_EQ(knob.channelInput(), expected.channelInput) << knob.name();
    EXPECT_EQ((knob.flags() & Knob::FORCE_RANGE) != 0, expected.forced) << knob.name();
    EXPECT_EQ((knob.flags() & Knob::STARTLINE) != 0, expected.startsLine) << knob.name();
  }
}

TEST(Controls, ranges_areThoseOfTheTable) {
  NodeBench bench;
  for (std::size_t i = 0; i < 48; ++i) {
    const Knob& knob = *bench.node().knobs()[i];
    const ExpectedRange& range = expectedControls[i].range;
    ASSERT_EQ(knob.range().has_value(), range.given) << knob.name();
    if (!range.given) continue;
    EXPECT_EQ(knob.range()->first, range.min) << knob.name();
    EXPECT_EQ(knob.range()->second, range.max) << knob.name();
  }
}

TEST(Controls, tooltips_areThoseOfTheTable) {
  NodeBench bench;
  for (std::size_t i = 0; i < 48; ++i) {
    const Knob& knob = *bench.node().knobs()[i];
    const char* expected = expectedControls[i].tooltip;
    ASSERT_EQ(knob.tooltip().has_value(), expected != nullptr) << knob.label();
    if (expected != nullptr) {
      EXPECT_EQ(*knob.tooltip(), expected) << knob.name();
    }
  }
}

TEST(Controls, defaults_areThoseOfTheTable) {
  NodeBench bench;
  for (std::size_t i = 0; i < 48; ++i) {
    const Knob& knob = *bench.node().knobs()[i];
    const std::string expected = expectedControls[i].initial;
    if (knob.type() == Knob::Type::Mask) {
      EXPECT_TRUE(knob.mask() == DD::Image::Mask_RGBA);
    } else if (knob.type() == Knob::Type::Decoration) {
      EXPECT_EQ(knob.valueText(), expected);
    } else {
      Knob copy = knob;
      ASSERT_TRUE(copy.set_text(expected.c_str())) << knob.name();
      for (int c = 0; c < knob.components(); ++c) {
        EXPECT_FLOAT_EQ(static_cast<float>(knob.get_value(c)),
                        static_cast<float>(copy.get_value(c)))
            << knob.name();
      }
    }
  }
}

std::vector<std::string> choicesOf(NodeBench& bench, const char* name) {
  return bench.knob(name).choices();
}

TEST(Controls, enumerations_haveTheirLabels) {
  using Labels = std::vector<std::string>;
  NodeBench bench;
  EXPECT_EQ(choicesOf(bench, "depthStyle"), (Labels{"Real", "1/z"}));
  EXPECT_EQ(choicesOf(bench, "filmFormat"),
            (Labels{"35mm", "Academy", "Anamorphic", "Super 35mm", "Vista Vision", "16mm",
                    "Super 16mm", "APSC", "Four Thirds", "Custom"}));
  EXPECT_EQ(choicesOf(bench, "worldScale"), (Labels{"mm", "cm", "m", "inches", "feet"}));
  EXPECT_EQ(choicesOf(bench, "focusOutput"), (Labels{"Both", "Front", "Back"}));
  EXPECT_EQ(choicesOf(bench, "focusRegionFalloff"), (Labels{"Linear", "Quadratic"}));
  EXPECT_EQ(choicesOf(bench, "outputType"),
            (Labels{"Defocused Image", "Lens Bloom", "Focal Distance Visualization", "Filter Shape",
                    "Focus Matte"}));
  EXPECT_EQ(choicesOf(bench, "kernelType"), (Labels{"Input", "Circular", "Aperture Blades"}));
}

TEST(Controls, names_areUniqueAndFieldsAreBoundOnce) {
  std::set<std::string> names;
  std::set<const void*> fields;
  DrevinSettings settings;
  std::size_t named = 0;
  for (const dvControl& control : dvControls) {
    if (control.name == nullptr) continue;
    ++named;
    names.insert(control.name);
    std::visit(
        [&](auto field) {
          if constexpr (!std::is_same_v<decltype(field), std::monostate>) {
            fields.insert(static_cast<const void*>(&(settings.*field)));
          }
        },
        control.field);
  }
  EXPECT_EQ(named, 42U);
  EXPECT_EQ(names.size(), named);
  EXPECT_EQ(fields.size(), named);
}

TEST(Controls, tableInCode_isWhatThePanelHas) {
  for (std::size_t i = 0; i < dvControls.size(); ++i) {
    const ExpectedControl& expected = expectedControls[i];
    const dvControl& control = dvControls[i];
    EXPECT_STREQ(control.name == nullptr ? "" : control.name, expected.name);
    EXPECT_STREQ(control.label, expected.label);
    EXPECT_EQ(control.range.kind == dvControlRange::Kind::Forced, expected.forced);
    EXPECT_EQ(control.range.kind != dvControlRange::Kind::None, expected.range.given);
  }
}

/// A control, a value unlike its default, and where the value must arrive.
struct Binding {
  const char* control;
  std::vector<double> values;
  std::function<std::vector<double>(const DrevinSettings&)> read;
};

template <typename Value>
Binding single(const char* control, double value, Value DrevinSettings::*field) {
  return {control, {value}, [field](const DrevinSettings& s) {
            return std::vector<double>{static_cast<double>(s.*field)};
          }};
}

const std::vector<Binding>& bindings() {
  using S = DrevinSettings;
  static const std::vector<Binding> list{
      single("depthChannel", 2, &S::depthChannel),
      single("outputType", 3, &S::outputType),
      single("focusOutput", 2, &S::focusOutput),
      single("multiplier", 2.5, &S::multiplier),
      single("frontmultiplier", 3.5, &S::frontMultiplier),
      single("backmultiplier", 4.5, &S::backMultiplier),
      single("depthStyle", 1, &S::depthStyle),
      single("focalPlane", 5.5, &S::focalPlane),
      single("focusRegionSize", 6.5, &S::focusRegionSize),
      single("focusRegionFalloff", 1, &S::focusRegionFalloff),
      single("defocusMatteChannel", 1, &S::defocusMatteChannel),
      single("normalizeVisualization", 0, &S::normalizeVisualization),
      single("integrateFrontAndBackSeperately", 1, &S::integrateFrontAndBackSeparately),
      single("realWorldLens", 1, &S::realWorldLens),
      single("focalLength", 7.5, &S::focalLength),
      single("fStop", 8.5, &S::fStop),
      single("worldScale", 4, &S::worldScale),
      single("worldScaleMultiplier", 9.5, &S::worldScaleMultiplier),
      single("filmFormat", 9, &S::filmFormat),
      single("apertureWidth", 10.5, &S::apertureWidth),
      single("apertureHeight", 11.5, &S::apertureHeight),
      single("bloom", 0.25, &S::bloom),
      single("bloomCurvature", 0.5, &S::bloomCurvature),
      single("bloomThreshold", 0.375, &S::bloomThreshold),
      single("bloomMatteChannel", 2, &S::bloomMatteChannel),
      single("kSphAbb", -0.5, &S::sphericalAberration),
      single("kChrAbb", -3.5, &S::chromaticAberration),
      {"kChrAbbOff",
       {0.125, 0.5, 0.75},
       [](const S& s) {
         const float* o = s.chromaticAberrationOffset;
         return std::vector<double>{static_cast<double>(o[0]), static_cast<double>(o[1]),
                                    static_cast<double>(o[2])};
       }},
      single("chromicAberrationMatteChannel", 3, &S::chromaticAberrationMatteChannel),
      single("kernelType", 2, &S::kernelType),
      single("max_kernelsize", 77, &S::maxKernelSize),
      single("expandBBoxToMaxKernelSize", 1, &S::expandBBoxToMaxKernelSize),
      single("missingKernelChannel", 4, &S::missingKernelChannel),
      single("kAspectRatio", 1.5, &S::aspectRatio),
      single("kSoftness", 0.75, &S::softness),
      single("kNumSides", 9, &S::numSides),
      single("kCurvature", 0.625, &S::bladeCurvature),
      single("kRotation", 0.875, &S::rotation),
      single("correctiveSlices", 33, &S::correctiveSlices),
      single("overrideNearAndFarForSlices", 1, &S::overrideNearAndFar),
      {"depthSlicesNearAndFar",
       {12.5, 13.5},
       [](const S& s) {
         return std::vector<double>{static_cast<double>(s.slicesNearAndFar[0]),
                                    static_cast<double>(s.slicesNearAndFar[1])};
       }},
  };
  return list;
}

TEST(Settings, everyControl_fillsItsOwnFieldAndNoOther) {
  EXPECT_EQ(bindings().size(), 41U);  // all named controls but the channel mask
  for (const Binding& changed : bindings()) {
    NodeBench bench;
    std::map<std::string, std::vector<double>> before;
    for (const Binding& binding : bindings()) {
      before[binding.control] = binding.read(bench.settings());
    }
    bench.knob(changed.control).set_value(changed.values[0]);
    for (std::size_t i = 0; i < changed.values.size(); ++i) {
      bench.knob(changed.control).set_value(changed.values[i], static_cast<int>(i));
    }
    bench.node().storeKnobs();
    for (const Binding& binding : bindings()) {
      const bool own = std::string(binding.control) == changed.control;
      EXPECT_EQ(binding.read(bench.settings()), own ? changed.values : before[binding.control])
          << changed.control << " and " << binding.control;
    }
    EXPECT_NE(changed.values, before[changed.control]) << changed.control;
  }
}

TEST(Settings, bokehChannels_arrive) {
  NodeBench bench;
  bench.setText("bokehChannels", "rgba.green,depth.Z");
  bench.node().storeKnobs();
  DD::Image::ChannelSet expected(DD::Image::Chan_Green);
  expected += DD::Image::Chan_Z;
  EXPECT_TRUE(bench.settings().bokehChannels == expected);
  bench.setText("bokehChannels", "all");
  bench.node().storeKnobs();
  EXPECT_TRUE(bench.settings().bokehChannels.all());
}

TEST(Settings, freshRecord_hasTheDefaultsThatNoControlShows) {
  const DrevinSettings settings;
  EXPECT_FALSE(settings.deepInput);
  EXPECT_TRUE(settings.processChannels == DD::Image::Mask_RGBA);
  EXPECT_TRUE(settings.bokehChannels == DD::Image::Mask_RGBA);
  EXPECT_EQ(settings.depthChannel, DD::Image::Chan_Z);
  EXPECT_TRUE(settings.metadata.empty());
}

TEST(ForcedRanges, valuesOutside_areHeld) {
  struct Forced {
    const char* name;
    double min;
    double max;
  };
  const Forced forced[] = {{"max_kernelsize", 1, 256},   {"kNumSides", 3, 16},
                           {"correctiveSlices", 1, 256}, {"focalLength", 0, 300},
                           {"bloomCurvature", 0, 4},     {"kSphAbb", -1, 1}};
  NodeBench bench;
  for (const Forced& control : forced) {
    bench.set(control.name, control.max + 50.0);
    EXPECT_EQ(bench.knob(control.name).get_value(), control.max) << control.name;
    bench.set(control.name, control.min - 50.0);
    EXPECT_EQ(bench.knob(control.name).get_value(), control.min) << control.name;
  }
}

TEST(SliderRanges, valuesOutside_areTaken) {
  NodeBench bench;
  for (const char* name :
       {"multiplier", "frontmultiplier", "backmultiplier", "focalPlane", "focusRegionSize", "bloom",
        "bloomThreshold", "kChrAbb", "kAspectRatio", "kRotation"}) {
    bench.set(name, 1000.0);
    EXPECT_EQ(bench.knob(name).get_value(), 1000.0) << name;
    bench.set(name, -1000.0);
    EXPECT_EQ(bench.knob(name).get_value(), -1000.0) << name;
  }
}

TEST(FilmFormats, table_hasNineSizesAndCustomBeyond) {
  const double sizes[9][2] = {{22.0, 16.0},   {22.0, 16.0},  {21.3, 17.8},
                              {24.89, 18.67}, {37.7, 25.17}, {10.26, 7.49},
                              {12.52, 7.41},  {22.2, 14.8},  {17.3, 13.0}};
  ASSERT_EQ(dvFilmFormats.size(), 9U);
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ(dvFilmFormats[i].width, sizes[i][0]);
    EXPECT_EQ(dvFilmFormats[i].height, sizes[i][1]);
  }
  EXPECT_EQ(dvCustomFilmFormat, 9);
}

TEST(EnablingRules, freshNode_greysOutFilmBackAndSliceVolume) {
  NodeBench bench;
  std::set<std::string> greyed;
  for (const auto& knob : bench.node().knobs()) {
    if (!knob->isEnabled()) greyed.insert(knob->name());
  }
  EXPECT_EQ(greyed,
            (std::set<std::string>{"apertureWidth", "apertureHeight", "depthSlicesNearAndFar"}));
  EXPECT_EQ(bench.knob("apertureWidth").get_value(), 22.0);
  EXPECT_EQ(bench.knob("apertureHeight").get_value(), 16.0);
}

TEST(EnablingRules, realWorldLens_greysOutMultiplierAndFalloffOnly) {
  NodeBench bench;
  bench.set("realWorldLens", 1);
  EXPECT_FALSE(bench.enabled("multiplier"));
  EXPECT_FALSE(bench.enabled("focusRegionFalloff"));
  EXPECT_TRUE(bench.enabled("frontmultiplier"));
  EXPECT_TRUE(bench.enabled("backmultiplier"));
  bench.set("realWorldLens", 0);
  EXPECT_TRUE(bench.enabled("multiplier"));
  EXPECT_TRUE(bench.enabled("focusRegionFalloff"));
}

TEST(EnablingRules, overrideNearAndFar_enablesTheVolume) {
  NodeBench bench;
  bench.set("overrideNearAndFarForSlices", 1);
  EXPECT_TRUE(bench.enabled("depthSlicesNearAndFar"));
  bench.set("overrideNearAndFarForSlices", 0);
  EXPECT_FALSE(bench.enabled("depthSlicesNearAndFar"));
}

TEST(EnablingRules, storePass_appliesThemToo) {
  NodeBench bench;
  bench.knob("realWorldLens").set_value(1);
  bench.knob("filmFormat").set_value(9);
  bench.knob("overrideNearAndFarForSlices").set_value(1);
  bench.node().storeKnobs();
  EXPECT_FALSE(bench.enabled("multiplier"));
  EXPECT_FALSE(bench.enabled("focusRegionFalloff"));
  EXPECT_TRUE(bench.enabled("apertureWidth"));
  EXPECT_TRUE(bench.enabled("apertureHeight"));
  EXPECT_TRUE(bench.enabled("depthSlicesNearAndFar"));
}

/// A control's value as the node's single precision has it.
float asFloat(NodeBench& bench, const char* name) {
  return static_cast<float>(bench.knob(name).get_value());
}

TEST(FilmFormatChosen, vistaVision_fillsTheFilmBackAndCustomKeepsItEditable) {
  NodeBench bench;
  bench.setText("filmFormat", "Vista Vision");
  EXPECT_EQ(asFloat(bench, "apertureWidth"), static_cast<float>(37.7));
  EXPECT_EQ(asFloat(bench, "apertureHeight"), static_cast<float>(25.17));
  EXPECT_FALSE(bench.enabled("apertureWidth"));
  EXPECT_FALSE(bench.enabled("apertureHeight"));
  EXPECT_EQ(bench.settings().apertureWidth, 37.7F);
  EXPECT_EQ(bench.settings().apertureHeight, 25.17F);
  bench.setText("filmFormat", "Custom");
  EXPECT_EQ(asFloat(bench, "apertureWidth"), static_cast<float>(37.7));
  EXPECT_EQ(asFloat(bench, "apertureHeight"), static_cast<float>(25.17));
  EXPECT_TRUE(bench.enabled("apertureWidth"));
  EXPECT_TRUE(bench.enabled("apertureHeight"));
}

TEST(FilmFormatChosen, everyFormat_fillsItsSize) {
  for (std::size_t i = 0; i < dvFilmFormats.size(); ++i) {
    NodeBench bench;
    bench.set("filmFormat", 9);
    bench.set("apertureWidth", 1.0);
    bench.set("filmFormat", static_cast<double>(i));
    EXPECT_EQ(asFloat(bench, "apertureWidth"), static_cast<float>(dvFilmFormats[i].width));
    EXPECT_EQ(asFloat(bench, "apertureHeight"), static_cast<float>(dvFilmFormats[i].height));
  }
}

TEST(KnobChanged, handledControls_returnOne) {
  NodeBench bench;
  for (const char* name : {"filmFormat", "realWorldLens", "overrideNearAndFarForSlices"}) {
    EXPECT_EQ(bench.drevin().knob_changed(&bench.knob(name)), 1) << name;
  }
}

TEST(KnobChanged, otherControlsAndNull_goToTheHost) {
  NodeBench bench;
  EXPECT_EQ(bench.drevin().knob_changed(&bench.knob("multiplier")), 0);
  EXPECT_EQ(bench.drevin().knob_changed(&Knob::showPanel), 0);
  EXPECT_EQ(bench.drevin().knob_changed(nullptr), 0);
}

}  // namespace
}  // namespace drevin::test
