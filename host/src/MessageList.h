#pragma once

/// The messages of a node or an operator, from any thread.

#include <mutex>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"

namespace embedded {

/// A text that comes more than once is kept once: many row threads may meet the same.
class MessageList {
 public:
  void add(Severity severity, std::string text);
  void clear();
  std::vector<Message> all() const;
  bool hasError() const;

 private:
  mutable std::mutex mutex_;
  std::vector<Message> messages_;
};

}  // namespace embedded
