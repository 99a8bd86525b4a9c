/// Times whole frames of the node, and rows of its row-by-row form, in turn.
///
///   drevin_frames KIND BLUR [WIDTH HEIGHT]

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "DDImage/Thread.h"
#include "EmbeddedHost/Plugin.h"
#include "EmbeddedHost/Render.h"
#include "frames/FrameScenes.h"
#include "node/Drevin.h"

namespace {

using namespace drevin::bench;
using drevin::Drevin;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

class FrameNode {
 public:
  FrameNode(const std::string& kind, double blur, int width, int height)
      : image_(frameScene(kind, width, height)) {
    const auto* description = embedded::findClass("Drevin");
    if (description == nullptr) throw std::logic_error("the class Drevin is not registered");
    node_ = std::make_unique<Node>(*description);
    node_->connect(drevin::dvInput::image, &image_);
    set("focalPlane", static_cast<double>(frameFocalPlane));
    set("focusRegionSize", static_cast<double>(frameFocusRegion));
    set("multiplier", blur);
    options_.channels = DD::Image::Mask_RGBA;
  }
  void set(const char* name, double value) {
    node_->setByHand(*node_->knob(name), std::vector<double>(1, value));
  }
  embedded::RenderResult render() { return embedded::render(*node_, options_); }
  Drevin& drevin() { return dynamic_cast<Drevin&>(node_->op()); }
  Node& node() { return *node_; }
  const embedded::RenderOptions& options() { return options_; }

 private:
  embedded::ImageInput image_;
  std::unique_ptr<Node> node_;
  embedded::RenderOptions options_;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return 2;
  const std::string kind = arguments[1];
  const double blur = std::atof(arguments[2]);
  const int width = count > 4 ? std::atoi(arguments[3]) : 1920;
  const int height = count > 4 ? std::atoi(arguments[4]) : 1080;
  FrameNode frame(kind, blur, width, height);
  const double begin = now();
  const embedded::RenderResult result = frame.render();
  const double frameTime = now() - begin;
  for (const auto& stage : result.stages)
    std::printf("  %s %.3f", stage.name.c_str(), stage.seconds);
  // Rows of the row-by-row form, on one thread: those that the picture lacks.
  embedded::RenderSession session(frame.node(), frame.options());
  double rows = 0.0;
  double worst = 0.0;
  constexpr int sampled = 3;
  for (int i = 0; i < sampled; ++i) {
    const int y = height * (2 * i + 1) / (2 * sampled);
    DD::Image::Row row(0, width);
    const double start = now();
    frame.drevin().defocusRow(y, 0, width, DD::Image::Mask_RGBA, row);
    rows += now() - start;
    for (const auto& [channel, plane] : result.image.planes) {
      for (int x = 0; x < width; ++x) {
        const double a = static_cast<double>((*plane)[static_cast<std::size_t>(y * width + x)]);
        const double b = static_cast<double>(row[channel][x]);
        worst = std::max(worst, std::fabs(a - b) / (1e-5 + 1e-4 * std::fabs(b)));
      }
    }
  }
  const double whole = rows / sampled * height / DD::Image::Thread::numCPUs;
  std::printf(
      "\n%s %g px %dx%d: %.3f s, rows %.1f s (scaled to %u threads), ratio %.1f, worst %.3f of the "
      "bound\n",
      kind.c_str(), blur, width, height, frameTime, whole, DD::Image::Thread::numCPUs,
      whole / frameTime, worst);
}
