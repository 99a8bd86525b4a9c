#include "sheet/SheetMessages.h"

#include <algorithm>

#include "terminal/Messages.h"

namespace drevintool {

void SheetMessages::addWarning(std::size_t picture, const std::string& text) {
  add(Kind::Warning, picture, text);
}

void SheetMessages::addNote(std::size_t picture, const std::string& text) {
  add(Kind::Note, picture, text);
}

void SheetMessages::addUnused(std::size_t picture, const std::string& text) {
  add(Kind::Unused, picture, text);
}

void SheetMessages::add(Kind kind, std::size_t picture, const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto same = [&](const Message& m) { return m.kind == kind && m.text == text; };
  auto found = std::find_if(messages_.begin(), messages_.end(), same);
  if (found == messages_.end()) {
    found = messages_.insert(messages_.end(), {kind, text, {}});
  }
  found->pictures.insert(picture);
}

void SheetMessages::print(const SheetPlan& plan) const {
  std::vector<Message> ordered = messages_;
  std::stable_sort(ordered.begin(), ordered.end(), [](const Message& a, const Message& b) {
    return *a.pictures.begin() < *b.pictures.begin();
  });
  for (const Message& message : ordered) {
    const std::size_t count = message.pictures.size();
    const bool ofAll = count >= plan.pictures();
    if (message.kind == Kind::Unused && !ofAll) continue;
    const std::string others = count > 1 ? " and " + std::to_string(count - 1) + " more" : "";
    const std::string line = count >= plan.pictures() ? message.text
                                                      : plan.nameOf(*message.pictures.begin()) +
                                                            others + ": " + message.text;
    message.kind == Kind::Note ? printNote(line) : printWarning(line);
  }
}

}  // namespace drevintool
