#include "controls/ScriptCurve.h"

#include <cctype>
#include <cmath>
#include <utility>
#include <vector>

#include "controls/NodeScript.h"
#include "sequence/FrameList.h"
#include "terminal/NumberText.h"

namespace drevintool {
namespace {

enum class Mode { Smooth, Linear, Constant };

class CurveReader {
 public:
  // False for a word that is no part of a curve.
  bool take(const std::string& word) {
    const char first = word.empty() ? '\0' : word.front();
    if (std::isalpha(static_cast<unsigned char>(first)) == 0) return addValue(word);
    if (first == 'x') return setFrame(word.substr(1));
    if (word.size() > 1) return parseNumber(word.substr(1)) && (first == 's' || first == 't');
    mode_ = first == 'K'                   ? Mode::Constant
            : first == 'L' || first == 'i' ? Mode::Linear
                                           : Mode::Smooth;
    return true;
  }

  std::optional<ScriptCurve> finish() const {
    if (keys_.empty()) return std::nullopt;
    return ScriptCurve{ControlCurve(keys_), smoothBefore_};
  }

 private:
  bool setFrame(const std::string& text) {
    const std::optional<double> frame = parseNumber(text);
    if (!frame || std::abs(*frame) > kFarthestFrame) return false;
    frame_ = *frame;
    return true;
  }

  bool addValue(const std::string& text) {
    const std::optional<double> value = parseNumber(text);
    if (!value || (!keys_.empty() && frame_ <= keys_.back().frame)) return false;
    smoothBefore_ = smoothBefore_ || smooth_;
    smooth_ = mode_ == Mode::Smooth;
    keys_.push_back({frame_, *value, mode_ == Mode::Constant});
    frame_ += 1.0;
    return true;
  }

  Mode mode_ = Mode::Smooth;
  double frame_ = 1.0;
  std::vector<CurveKey> keys_;
  bool smooth_ = false;        // the last key
  bool smoothBefore_ = false;  // a key that another follows
};

}  // namespace

std::optional<ScriptCurve> parseScriptCurve(const std::string& text) {
  // Most values are no curves, and need not be words either.
  if (text.find("curve") == std::string::npos) return std::nullopt;
  std::vector<ScriptWord> words;
  try {
    words = scriptWords(text);
  } catch (const ScriptFault&) {
    return std::nullopt;
  }
  if (words.empty() || words.front().text != "curve") return std::nullopt;
  CurveReader reader;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i].braced || !reader.take(words[i].text)) return std::nullopt;
  }
  return reader.finish();
}

std::string scriptCurveText(const ControlCurve& curve) {
  std::string text = "curve";
  std::optional<bool> constant;
  for (const CurveKey& key : curve.keys()) {
    if (constant != key.constant) text += key.constant ? " K" : " L";
    constant = key.constant;
    text += " x" + exactNumberText(key.frame) + " " + exactNumberText(key.value);
  }
  return text;
}

}  // namespace drevintool
