#pragma once

/// A node that is asked what a render would come to.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "controls/ControlChanges.h"
#include "picture/Picture.h"

namespace drevintool {

/// The controls of a render that is asked about, and its pictures beside the first.
struct AskedRender {
  const DD::Image::Op::Description& description;
  const ControlChanges& changes;
  std::string camera;  ///< as --camera takes it; empty: none
  std::optional<int> frame;
  std::shared_ptr<const Picture> kernel;  ///< null: none
  std::shared_ptr<const Picture> mattes;  ///< null: none
};

/// A node with those controls and that camera, its channels picked from `picture`. What it reads
/// must outlive it.
class AskedNode {
 public:
  /// Throws ToolError as a render does.
  AskedNode(const AskedRender& asked, const Picture& picture, embedded::Image image);

  Node& node() { return node_; }
  /// Puts a picture on an input of the node beside the first.
  void connect(int input, embedded::Image image);
  void connect(std::shared_ptr<embedded::DeepSource> deep);

 private:
  std::vector<std::unique_ptr<DD::Image::Op>> inputs_;
  Node node_;
};

/// Lets the node do without an aperture image, which nobody has given to it.
void useCircularAperture(Node& node);

}  // namespace drevintool
