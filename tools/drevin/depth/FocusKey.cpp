#include "depth/FocusKey.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--focus-at " + text + ": " + reason));
}

FocusKey parseFocusKey(const std::string& text) {
  const std::size_t at = text.find('@');
  if (at == std::string::npos) {
    fail(text, "has no frame; of several points each is a key, such as " + text + "@1");
  }
  const std::string number = text.substr(at + 1);
  const std::optional<int> frame = parseInteger(number);
  if (!frame || std::abs(*frame) > kFarthestFrame) {
    fail(text, "'" + number + "' is no frame; give the number of one whose picture is there");
  }
  FocusKey key{*frame, parseFocusPoint(text.substr(0, at))};
  key.point.text = text;
  return key;
}

}  // namespace

std::vector<FocusKey> parseFocusKeys(const std::vector<std::string>& texts) {
  std::vector<FocusKey> keys;
  for (const std::string& text : texts) {
    const FocusKey key = parseFocusKey(text);
    const auto place = std::lower_bound(keys.begin(), keys.end(), key.frame,
                                        [](const FocusKey& k, int f) { return k.frame < f; });
    if (place != keys.end() && place->frame == key.frame) {
      fail(text, "has a key at frame " + std::to_string(key.frame) + " already");
    }
    keys.insert(place, key);
  }
  return keys;
}

}  // namespace drevintool
