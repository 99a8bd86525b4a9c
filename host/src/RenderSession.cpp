#include <exception>
#include <string>

#include "DDImage/Iop.h"
#include "EmbeddedHost/Render.h"
#include "OpState.h"
#include "StageClock.h"

namespace embedded {

using DD::Image::Box;
using DD::Image::ChannelSet;
using DD::Image::Iop;
using DD::Image::Op;
using DD::Image::Row;

struct RenderSession::Impl {
  Impl(Node& n, const RenderOptions& o) : node(n), options(o), iop(n.op().iop()) {}

  Node& node;
  RenderOptions options;
  Iop* iop;
  StageClock clock;
  Box box;
  DD::Image::IopInfo noInfo;
  DD::Image::Hash hash;
  std::map<int, InputRequest> requests;

  bool ok() const { return iop != nullptr && !iop->inError() && !abortRequested(); }

  void announce(const std::string& stage) {
    clock.begin(stage);
    if (options.progress) options.progress({stage, 0, 0});
  }

  /// Whatever leaves the operator becomes a message, so that no frame brings the program down.
  template <class Step>
  void guarded(const Step& step) const {
    try {
      step();
    } catch (const std::bad_alloc&) {
      node.op().error("%s", "out of memory");
    } catch (const std::exception& exception) {
      node.op().error("%s", exception.what());
    } catch (...) {
      node.op().error("%s", "unknown exception");
    }
  }

  void prepare() {
    Op& op = node.op();
    if (iop == nullptr) {
      op.error("%s makes no pictures", op.Class());
      return;
    }
    announce("Validate");
    op.invalidate();
    op.hostState().context.setScale(options.proxyScale, options.proxyScale);
    node.storeKnobs();
    hash = op.hash();
    op.validate(false);
    op.validate(true);
    if (!ok()) return;
    box = iop->info();
    if (options.region) box.intersect(*options.region);
    if (box.empty() || options.channels.empty()) return;
    request();
    op.open();
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
};

RenderSession::RenderSession(Node& node, const RenderOptions& options)
    : impl_(std::make_unique<Impl>(node, options)) {
  Impl* impl = impl_.get();
  node.onStage([impl](const std::string& stage) { impl->announce(stage); });
  impl_->guarded([&] { impl_->prepare(); });
  impl_->clock.end();
}

RenderSession::~RenderSession() {
  impl_->guarded([&] { impl_->node.op().close(); });
  impl_->node.onStage(nullptr);
}

bool RenderSession::ok() const {
  return impl_->ok();
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
  impl_->guarded([&] { impl_->iop->engine(y, x, r, channels, row); });
  return impl_->ok();
}

}  // namespace embedded
