#pragma once

/// A Drevin node on the embedded host, with what a test needs to drive it.

#include <memory>
#include <string>
#include <vector>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Render.h"
#include "node/Drevin.h"
#include "support/LiteralFrame.h"

namespace drevin::test {

/// The host's channel of a literal channel number; numbers that the host does not name get a name.
DD::Image::Channel hostChannel(int number);
DD::Image::ChannelSet hostChannels(const std::vector<int>& numbers);

/// A literal picture as the host holds one.
embedded::Image hostImage(const LiteralPicture& picture);

class NodeBench {
 public:
  NodeBench();
  /// A node with the scene's pictures connected and its controls set by hand.
  explicit NodeBench(const LiteralScene& scene);
  ~NodeBench();

  Node& node() { return *node_; }
  Drevin& drevin() { return *drevin_; }
  const DrevinSettings& settings() const { return drevin_->settings(); }

  /// The control of that name; the test fails and a stand-in is given where there is none.
  DD::Image::Knob& knob(const std::string& name);
  bool enabled(const std::string& name) { return knob(name).isEnabled(); }
  /// Sets a control as an artist's hand would.
  void set(const std::string& name, double value) {
    node_->setByHand(knob(name), std::vector<double>(1, value));
  }
  void set(const std::string& name, const std::vector<double>& values) {
    node_->setByHand(knob(name), values);
  }
  void setText(const std::string& name, const std::string& text);

  void connectPicture(int input, const LiteralPicture& picture);
  void connectCamera(const embedded::CameraValues& values);
  bool connect(int input, DD::Image::Op* op) {
    close();
    return node_->connect(input, op);
  }

  /// Store pass and validation for real.
  void validate();
  /// What the scene asks for: its channels, and its interface scale.
  embedded::RenderOptions options;
  embedded::RenderResult render() {
    close();
    return embedded::render(*node_, options);
  }
  /// Validates, requests and opens. The kernels and the picture stand until the node is closed,
  /// rendered or rewired.
  void open() {
    close();
    session_ = std::make_unique<embedded::RenderSession>(*node_, options);
  }
  void close() { session_.reset(); }

 private:
  void setControls(const LiteralSettings& settings);
  void setLensControls(const LiteralSettings& settings);
  void setKernelControls(const LiteralSettings& settings);

  std::vector<std::unique_ptr<DD::Image::Op>> inputs_;
  std::unique_ptr<Node> node_;
  std::unique_ptr<embedded::RenderSession> session_;  ///< while the node is open
  Drevin* drevin_ = nullptr;
  DD::Image::Knob standIn_;
};

}  // namespace drevin::test
