#include "EmbeddedHost/Node.h"

#include <mutex>
#include <utility>

#include "DDImage/Knobs.h"

using DD::Image::Knob;
using DD::Image::Op;

struct Node::Impl {
  explicit Impl(const Op::Description& d) : description(d) {}

  const Op::Description& description;
  std::vector<std::unique_ptr<Knob>> knobs;
  std::unique_ptr<Op> op;

  // Rows report from many threads.
  mutable std::mutex mutex;
  std::vector<embedded::Message> messages;
  std::function<void(const std::string&)> stageListener;

  void tell(Knob& changed) {
    if ((changed.flags() & Knob::NO_KNOB_CHANGED) != 0) return;
    // The documented meaning of 0: this control is of no interest to the operator. The stand-ins
    // are shared by all nodes and never marked.
    const bool standIn = &changed == &Knob::showPanel || &changed == &Knob::inputChange;
    if (op->knob_changed(&changed) == 0 && !standIn) changed.set_flag(Knob::NO_KNOB_CHANGED);
  }
};

Node::Node(const Op::Description& description) : impl_(std::make_unique<Impl>(description)) {
  impl_->op.reset(description.constructor(this));
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

bool Node::connect(int input, Op* op) {
  Op& self = *impl_->op;
  if (input < 0 || input >= self.inputs()) return false;
  if (op != nullptr && !self.test_input(input, op)) return false;
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
}

std::vector<embedded::Message> Node::messages() const {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  return impl_->messages;
}

bool Node::hasError() const {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  for (const embedded::Message& message : impl_->messages) {
    if (message.severity == embedded::Severity::Error) return true;
  }
  return false;
}

void Node::clearMessages() {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->messages.clear();
}

void Node::addMessage(embedded::Severity severity, std::string text) {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->messages.push_back({severity, std::move(text)});
}

void Node::onStage(std::function<void(const std::string&)> listener) {
  const std::lock_guard<std::mutex> lock(impl_->mutex);
  impl_->stageListener = std::move(listener);
}

void Node::announceStage(const std::string& name) {
  std::function<void(const std::string&)> listener;
  {
    const std::lock_guard<std::mutex> lock(impl_->mutex);
    listener = impl_->stageListener;
  }
  if (listener) listener(name);
}
