#pragma once

/// A node on the embedded host with the pictures of a case.

#include <memory>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Render.h"
#include "frames/FramePictures.h"
#include "node/Drevin.h"

namespace drevin::bench {

class FrameNode {
 public:
  FrameNode(const FrameCase& picture, const FramePictures& pictures);
  ~FrameNode();
  FrameNode(const FrameNode&) = delete;
  FrameNode& operator=(const FrameNode&) = delete;

  /// Throws std::runtime_error if the node reports an error.
  embedded::RenderResult render();
  /// As above, a part of the picture.
  embedded::RenderResult render(const DD::Image::Box& region);

  Drevin& drevin() { return dynamic_cast<Drevin&>(node_->op()); }
  Node& node() { return *node_; }
  const embedded::RenderOptions& options() const { return options_; }

 private:
  embedded::RenderResult render(const embedded::RenderOptions& options);
  void connect(int input, DD::Image::Op& op);
  void set(const char* name, double value);
  void setControls(const test::LiteralSettings& settings);

  embedded::ImageInput image_;
  std::vector<std::unique_ptr<DD::Image::Op>> others_;
  std::unique_ptr<Node> node_;
  embedded::RenderOptions options_;
};

/// Rows of a node's row-by-row form, which is opened for them without a prepared picture. The node
/// is not to be rendered while this lives.
class PlainNodeRows {
 public:
  explicit PlainNodeRows(FrameNode& node);

  /// Row y of RGBA as the picture has it, one plane after the other.
  std::vector<float> row(int y);

 private:
  FrameNode& node_;
  embedded::RenderSession session_;
};

}  // namespace drevin::bench
