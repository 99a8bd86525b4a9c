#include "controls/FocusControl.h"

#include "controls/KeyedSettings.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {

void setFocus(Node& node, float distance) {
  DD::Image::Knob* knob = node.knob(kFocusControl);
  if (knob != nullptr) node.setByHand(*knob, std::vector<double>{static_cast<double>(distance)});
}

void checkFocusNotSet(const std::vector<std::string>& settings, const std::string& option) {
  for (const KeyedSetting& setting : groupSettings(settings)) {
    if (setting.first().name != kFocusControl) continue;
    throw ToolError(ExitCode::Usage, oneLine(setting.first().text + ": " + option +
                                             " sets the focus too; give one or the other"));
  }
}

}  // namespace drevintool
