#include "EmbeddedHost/Node.h"

#include <mutex>
#include <set>
#include <stdexcept>
#include <utility>

#include "DDImage/Knobs.h"
#include "MessageList.h"

using DD::Image::Knob;
using DD::Image::Op;

struct Node::Impl {
  explicit Impl(const Op::Description& d) : description(d) {}

  const Op::Description& description;
  std::vector<std::unique_ptr<Knob>> knobs;

  embedded::MessageList messages;
  // Operators tell their progress from many threads.
  std::mutex mutex;
  embedded::ProgressListener listener;

  // The stand-ins are shared by all nodes, so that what they are of no interest to is kept here.
  std::set<const Knob*> ignoredStandIns;
  // The last member: an operator may still use its node while it is destroyed.
  std::unique_ptr<Op> op;

  embedded::ProgressListener currentListener() {
    const std::lock_guard<std::mutex> lock(mutex);
    return listener;
  }

  void tell(Knob& changed) {
    if ((changed.flags() & Knob::NO_KNOB_CHANGED) != 0 || ignoredStandIns.count(&changed) != 0) {
      return;
    }
    // The documented meaning of 0: this control is of no interest to the operator.
    if (op->knob_changed(&changed) != 0) return;
    if (&changed == &Knob::showPanel || &changed == &Knob::inputChange) {
      ignoredStandIns.insert(&changed);
    } else {
      changed.set_flag(Knob::NO_KNOB_CHANGED);
    }
  }
};

Node::Node(const Op::Description& description) : impl_(std::make_unique<Impl>(description)) {
  impl_->op.reset(description.constructor(this));
  if (impl_->op == nullptr) {
    throw std::runtime_error(std::string(description.name) + ": the class made no operator");
  }
  DD::Image::Knob_Closure make(*this, true);
  impl_->op->knobs(make);
  impl_->op->fillDefaultInputs();
}

Node::~Node() = default;

const Op::Description& Node::description() const {
  return impl_->description;
}
Op& Node::op() const {
  return *impl_->op;
}

namespace {

/// True if `op` is `wanted`, or reads it by any way.
bool reads(const Op* op, const Op* wanted) {
  if (op == nullptr || op == wanted) return op != nullptr;
  for (int n = 0; n < op->inputs(); ++n) {
    if (reads(op->input(n), wanted)) return true;
  }
  return false;
}

}  // namespace

bool Node::connect(int input, Op* op) {
  Op& self = *impl_->op;
  if (input < 0 || input >= self.inputs()) return false;
  if (op != nullptr && (reads(op, &self) || !self.test_input(input, op))) return false;
  self.set_input(input, op, 0, 0);
  impl_->tell(Knob::inputChange);
  return true;
}

const std::vector<std::unique_ptr<Knob>>& Node::knobs() const {
  return impl_->knobs;
}

Knob* Node::knob(const std::string& name) const {
  if (name.empty()) return nullptr;
  for (const auto& knob : impl_->knobs) {
    if (knob->name() == name) return knob.get();
  }
  return nullptr;
}

Knob* Node::addKnob(std::unique_ptr<Knob> knob) {
  impl_->knobs.push_back(std::move(knob));
  return impl_->knobs.back().get();
}

void Node::setByHand(Knob& knob, const std::vector<double>& values) {
  for (std::size_t i = 0; i < values.size(); ++i)
    knob.set_value(values[i], static_cast<int>(i));
  impl_->tell(knob);
}

bool Node::setByHand(Knob& knob, const std::string& text) {
  if (!knob.set_text(text.c_str())) return false;
  impl_->tell(knob);
  return true;
}

void Node::showPanel() {
  impl_->tell(Knob::showPanel);
}

void Node::storeKnobs() {
  DD::Image::Knob_Closure store(*this, false);
  impl_->op->knobs(store);
  impl_->op->invalidate();
}

std::vector<embedded::Message> Node::messages() const {
  return impl_->messages.all();
}

bool Node::hasError() const {
  return impl_->messages.hasError();
}

void Node::clearMessages() {
  impl_->messages.clear();
}

void Node::addMessage(embedded::Severity severity, std::string text) {
  impl_->messages.add(severity, std::move(text));
}

void Node::onProgress(embedded::ProgressListener listener) {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->listener = std::move(listener);
}

void Node::announceStage(const std::string& name) {
  const auto tell = impl_->currentListener().stage;
  if (tell) tell(name);
}

void Node::announceFraction(double fraction) {
  const auto tell = impl_->currentListener().fraction;
  if (tell) tell(fraction);
}
