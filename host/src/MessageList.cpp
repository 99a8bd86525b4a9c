#include "MessageList.h"

#include <algorithm>
#include <utility>

namespace embedded {

void MessageList::add(Severity severity, std::string text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const bool known = std::any_of(messages_.begin(), messages_.end(), [&](const Message& message) {
    return message.severity == severity && message.text == text;
  });
  if (!known) messages_.push_back({severity, std::move(text)});
}

void MessageList::clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  messages_.clear();
}

std::vector<Message> MessageList::all() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return messages_;
}

bool MessageList::hasError() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::any_of(messages_.begin(), messages_.end(),
                     [](const Message& message) { return message.severity == Severity::Error; });
}

}  // namespace embedded
