#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "DDImage/Iop.h"
#include "EmbeddedHost/Render.h"
#include "Guarded.h"
#include "OpState.h"
#include "StageClock.h"

namespace embedded {

using DD::Image::Box;
using DD::Image::ChannelSet;
using DD::Image::Iop;
using DD::Image::Op;
using DD::Image::Row;

struct RenderSession::Impl {
  Impl(Node& n, const RenderOptions& o)
      : node(n), options(o), iop(n.op().iop()), thread(std::this_thread::get_id()) {}

  Node& node;
  RenderOptions options;
  Iop* iop;
  std::thread::id thread;  // of the session, on which progress is told
  std::vector<Op*> chain;  // all operators that are read, inputs first, the node's own last
  StageClock clock;
  std::chrono::steady_clock::time_point told;
  Box box;
  DD::Image::IopInfo noInfo;
  DD::Image::Hash hash;
  std::map<int, InputRequest> requests;

  bool isCurrent() const { return node.op().hostState().session == this; }

  bool failed() const {
    return iop == nullptr || iop->inError() ||
           std::any_of(chain.begin(), chain.end(), [](const Op* op) { return op->inError(); });
  }

  bool ok() const { return isCurrent() && !failed() && !abortRequested(); }

  void announce(const std::string& stage) {
    clock.begin(stage);
    tell({stage, 0, 0});
  }

  void announceFraction(double fraction) {
    if (!(fraction >= 0.0) || std::this_thread::get_id() != thread) return;
    if (std::chrono::steady_clock::now() - told < std::chrono::milliseconds(100)) return;
    tell({clock.current(), 0, 0, std::min(fraction, 1.0)});
  }

  /// Operators may announce from any thread; the caller hears of it on the session's own.
  void tell(const Progress& progress) {
    if (!options.progress || std::this_thread::get_id() != thread) return;
    told = std::chrono::steady_clock::now();
    options.progress(progress);
  }

  void collect(Op& op) {
    for (int n = 0; n < op.inputs(); ++n) {
      Op* input = static_cast<const Op&>(op).Op::input(n);
      if (input != nullptr) collect(*input);
    }
    if (std::find(chain.begin(), chain.end(), &op) == chain.end()) chain.push_back(&op);
  }

  void store() {
    for (Op* op : chain) {
      Op::State& state = op->hostState();
      const float scale = options.proxyScale;
      if (state.context.scale_x() != scale || state.context.scale_y() != scale) {
        state.context.setScale(scale, scale);
        op->invalidate();
      }
      // Operators without a node have no controls: what they hold stays valid, but for an error,
      // which lasts until the next validation.
      if (state.node == nullptr && !op->inError()) continue;
      op->close();
      op->invalidate();
      if (state.node != nullptr) state.node->storeKnobs();
    }
  }

  void prepare() {
    Op& op = node.op();
    op.hostState().session = this;
    if (iop == nullptr) {
      op.error("%s makes no pictures", op.Class());
      return;
    }
    announce("Validate");
    collect(op);
    store();
    hash = op.hash();
    op.validate(false);
    op.validate(true);
    if (!ok()) return;
    box = iop->info();
    if (options.region) box.intersect(*options.region);
    if (box.empty() || options.channels.empty()) return;
    request();
    if (ok()) op.open();
  }

  void request() {
    forEachInput([](int /*n*/, Op& input) { input.hostState().clearRequests(); });
    iop->request(box, options.channels, 1);
    forEachInput([&](int n, Op& input) {
      const Op::State& state = input.hostState();
      if (state.requestedChannels.empty()) return;
      requests[n] = {state.requestedBox, state.requestedChannels};
    });
  }

  template <class Visit>
  void forEachInput(const Visit& visit) {
    for (int n = 0; n < iop->inputs(); ++n) {
      Op* input = static_cast<const Op*>(iop)->input(n);
      if (input != nullptr) visit(n, *input);
    }
  }

  void makeRow(int y, int x, int r, const ChannelSet& channels, Row& row) const {
    const Box& all = iop->info();
    ChannelSet made(channels);
    made &= iop->info().channels();
    if (made.empty() || !all.contains(Box(x, y, r, y + 1))) {
      row.get(*iop, y, x, r, channels);
      return;
    }
    ChannelSet absent(channels);
    absent -= made;
    row.erase(absent);
    iop->open();
    iop->engine(y, x, r, made, row);
  }

  void close() {
    for (auto op = chain.rbegin(); op != chain.rend(); ++op)
      (*op)->close();
  }
};

RenderSession::RenderSession(Node& node, const RenderOptions& options)
    : impl_(std::make_unique<Impl>(node, options)) {
  Impl* impl = impl_.get();
  node.onProgress({[impl](const std::string& stage) { impl->announce(stage); },
                   [impl](double fraction) { impl->announceFraction(fraction); }});
  guarded(impl_->node.op(), [&] { impl_->prepare(); });
  // What rows announce is no stage: they run side by side.
  node.onProgress({});
  impl_->clock.end();
}

RenderSession::~RenderSession() {
  if (!impl_->isCurrent()) return;
  guarded(impl_->node.op(), [&] { impl_->close(); });
  impl_->node.op().hostState().session = nullptr;
}

bool RenderSession::ok() const {
  return impl_->ok();
}

bool RenderSession::failed() const {
  return impl_->failed();
}

std::vector<Message> RenderSession::messages() const {
  if (impl_->chain.empty()) return impl_->node.messages();
  std::vector<Message> all;
  for (const Op* op : impl_->chain) {
    for (Message& message : op->hostState().allMessages())
      all.push_back(std::move(message));
  }
  return all;
}

const Box& RenderSession::box() const {
  return impl_->box;
}

const DD::Image::IopInfo& RenderSession::info() const {
  return impl_->iop == nullptr ? impl_->noInfo : impl_->iop->info();
}

const DD::Image::Hash& RenderSession::hash() const {
  return impl_->hash;
}

const std::map<int, InputRequest>& RenderSession::requests() const {
  return impl_->requests;
}

std::vector<Stage> RenderSession::stages() const {
  return impl_->clock.stages();
}

void RenderSession::beginStage(const std::string& name) {
  impl_->clock.begin(name);
}

bool RenderSession::row(int y, int x, int r, const ChannelSet& channels, Row& row) {
  if (!impl_->ok()) return false;
  if (r > x && !channels.empty()) {
    guarded(impl_->node.op(), [&] { impl_->makeRow(y, x, r, channels, row); });
  }
  return impl_->ok();
}

}  // namespace embedded
