#pragma once

/// What the host keeps of an operator.

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Op.h"
#include "MessageList.h"

namespace DD {
namespace Image {

struct Op::State {
  /// How far the operator's information is settled.
  enum class Validity { None, Preliminary, Settled };

  explicit State(Node* owner) : node(owner) {}

  Node* node;  ///< null for operators that no node owns
  std::vector<Op*> connected;
  std::vector<std::unique_ptr<Op>> standIns;
  Validity validity = Validity::None;
  bool cached = false;
  OutputContext context;

  std::atomic<bool> inError{false};
  /// Of operators that no node owns.
  embedded::MessageList messages;
  /// The render that uses the operator now.
  std::atomic<const void*> session{nullptr};
  std::mutex openMutex;
  bool opened = false;

  Box requestedBox;
  ChannelSet requestedChannels;

  std::vector<embedded::Message> allMessages() const {
    return node == nullptr ? messages.all() : node->messages();
  }
  void clearMessages() { node == nullptr ? messages.clear() : node->clearMessages(); }
  void addMessage(embedded::Severity severity, const std::string& text) {
    node == nullptr ? messages.add(severity, text) : node->addMessage(severity, text);
  }

  /// Adds to what is asked of this operator.
  void recordRequest(const Box& box, const ChannelSet& channels) {
    requestedBox.merge(box);
    requestedChannels += channels;
  }
  void clearRequests() {
    requestedBox.clear();
    requestedChannels.clear();
  }
};

}  // namespace Image
}  // namespace DD
