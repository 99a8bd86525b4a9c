/// Any bytes as a script of the host: nodes whose values are words or curves, or a fault.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Expect.h"
#include "controls/NodeScript.h"
#include "controls/ScriptCurve.h"

namespace {

using drevinfuzz::expect;
using drevintool::ScriptKnob;
using drevintool::ScriptNode;

void readCurve(const std::string& text) {
  const auto curve = drevintool::parseScriptCurve(text);
  if (!curve) return;
  for (const double frame : {-1e9, 0.0, 1.5, 1e9})
    expect(std::isfinite(curve->curve.at(frame)), "a curve is not finite");
  const auto again = drevintool::parseScriptCurve(drevintool::scriptCurveText(curve->curve));
  expect(again.has_value(), "a curve does not read back");
  expect(again->curve.at(1.5) == curve->curve.at(1.5), "a curve reads back as another");
}

void readKnob(const ScriptKnob& knob) {
  readCurve(knob.value.text);
  if (!knob.value.braced) return;
  for (const auto& word : drevintool::scriptWords(knob.value.text))
    readCurve(word.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string text(bytes, bytes + count);
  try {
    for (const ScriptNode& node : drevintool::parseNodeScript(text, "Drevin")) {
      for (const ScriptKnob& knob : node.knobs) {
        try {
          readKnob(knob);
        } catch (const drevintool::ScriptFault&) {
          // A word in a value may have no end though the value has one.
        }
      }
    }
  } catch (const drevintool::ScriptFault& fault) {
    expect(std::string(fault.what()).find('\n') == std::string::npos, "a fault of several lines");
  }
  return 0;
}
