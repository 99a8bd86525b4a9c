#include "DDImage/Op.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "DDImage/Iop.h"
#include "EmbeddedHost/Render.h"
#include "OpState.h"

namespace DD {
namespace Image {

namespace {

std::string formatted(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): every caller has started it
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

}  // namespace

Op::Op(Node* node) : state_(std::make_unique<State>(node)) {}
Op::~Op() = default;

void Op::knobs(Knob_Callback /*f*/) {}

int Op::knob_changed(Knob* /*knob*/) {
  return 0;
}

Knob* Op::knob(const char* name) const {
  return state_->node == nullptr || name == nullptr ? nullptr : state_->node->knob(name);
}

void Op::inputs(int count) {
  const auto size = static_cast<std::size_t>(std::max(0, count));
  state_->connected.resize(size, nullptr);
  state_->standIns.resize(size);
}

int Op::inputs() const {
  return static_cast<int>(state_->connected.size());
}

Op* Op::input(int n) const {
  if (n < 0 || n >= inputs()) return nullptr;
  const auto i = static_cast<std::size_t>(n);
  return state_->connected[i] != nullptr ? state_->connected[i] : state_->standIns[i].get();
}

Op* Op::node_input(int n, GenerateType /*type*/, const OutputContext* /*context*/) const {
  return input(n);
}

bool Op::test_input(int /*n*/, Op* op) const {
  return op != nullptr;
}

Op* Op::default_input(int /*n*/) const {
  return nullptr;
}

const char* Op::input_label(int /*n*/, char* /*buffer*/) const {
  return "";
}

void Op::set_input(int n, Op* op, int /*input*/, int /*offset*/) {
  if (n < 0 || n >= inputs()) return;
  state_->connected[static_cast<std::size_t>(n)] = op;
  invalidate();
  fillDefaultInputs();
}

void Op::fillDefaultInputs() {
  for (int n = 0; n < inputs(); ++n) {
    const auto i = static_cast<std::size_t>(n);
    if (state_->connected[i] == nullptr && state_->standIns[i] == nullptr) {
      state_->standIns[i].reset(default_input(n));
    }
  }
}

bool Op::validatedAs(bool for_real) const {
  return state_->validity >= (for_real ? State::Validity::Settled : State::Validity::Preliminary);
}

void Op::validate(bool for_real) {
  using Validity = State::Validity;
  const Validity wanted = for_real ? Validity::Settled : Validity::Preliminary;
  if (validatedAs(for_real)) return;
  fillDefaultInputs();
  state_->inError = false;
  state_->clearMessages();
  _validate(for_real);
  state_->validity = wanted;
}

Hash Op::hash() const {
  Hash hash;
  hash.append(Class());
  // A picture in proxy is another picture.
  hash.append(state_->context.scale_x());
  hash.append(state_->context.scale_y());
  if (state_->node != nullptr) {
    for (const auto& knob : state_->node->knobs())
      knob->append(hash);
  }
  for (int n = 0; n < inputs(); ++n) {
    const Op* op = input(n);
    hash.append(op == nullptr ? Hash() : op->hash());
  }
  // append is not const in the documented interface; it changes nothing of the operator.
  const_cast<Op*>(this)->append(hash);
  return hash;
}

void Op::append(Hash& /*hash*/) {}

bool Op::cached() const {
  return state_->cached;
}
void Op::cached(bool value) {
  state_->cached = value;
}

const MetaData::Bundle& Op::_fetchMetaData(const char* key) {
  static const MetaData::Bundle nothing;
  Op* first = input(0);
  return first == nullptr ? nothing : first->fetchMetaData(key);
}

void Op::error(const char* format, ...) const {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = formatted(format, arguments);
  va_end(arguments);
  state_->inError = true;
  state_->addMessage(embedded::Severity::Error, text);
}

void Op::warning(const char* format, ...) const {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = formatted(format, arguments);
  va_end(arguments);
  state_->addMessage(embedded::Severity::Warning, text);
}

bool Op::aborted() const {
  return embedded::abortRequested() || inError();
}

void Op::progressMessage(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = formatted(format, arguments);
  va_end(arguments);
  if (state_->node != nullptr) state_->node->announceStage(text);
}

void Op::progressFraction(double fraction) {
  if (state_->node != nullptr) state_->node->announceFraction(fraction);
}

void Op::progressFraction(int done, int total) {
  if (total > 0) progressFraction(static_cast<double>(done) / total);
}

const OutputContext& Op::outputContext() const {
  return state_->context;
}
const OutputContext& Op::uiContext() const {
  return state_->context;
}

Iop* Op::iop() {
  return nullptr;
}
const Iop* Op::iop() const {
  return nullptr;
}

bool Op::inError() const {
  return state_->inError;
}

void Op::open() {
  const std::lock_guard<std::mutex> lock(state_->openMutex);
  if (state_->opened) return;
  _open();
  state_->opened = true;
}

void Op::close() {
  const std::lock_guard<std::mutex> lock(state_->openMutex);
  if (!state_->opened) return;
  // Closed even if _close throws.
  state_->opened = false;
  _close();
}

void Op::invalidate() {
  if (state_->validity == State::Validity::None) return;
  state_->validity = State::Validity::None;
  _invalidate();
}

void Op::_validate(bool for_real) {
  for (int n = 0; n < inputs(); ++n) {
    Op* op = input(n);
    if (op != nullptr) op->validate(for_real);
  }
}

void Op::_open() {}
void Op::_close() {}
void Op::_invalidate() {}

}  // namespace Image
}  // namespace DD
