#pragma once

/// The pictures that a render reads, and their places on the node.

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "arguments/RenderArguments.h"
#include "deep/DeepExrSource.h"
#include "picture/Picture.h"
#include "render/SharedFiles.h"

namespace drevintool {

/// Input numbers of the node.
constexpr int kImageInput = 0;
constexpr int kKernelInput = 1;
constexpr int kDeepInput = 3;
constexpr int kMattesInput = 4;

/// A picture and the input that it is for.
struct InputPicture {
  int input;
  Picture picture;
};

/// What serves pictures to a node.
using ConnectedInputs = std::vector<std::unique_ptr<DD::Image::Op>>;

class InputPictures {
 public:
  /// Reads the flat files that the arguments name and opens the deep one, whose samples are read
  /// while rows are rendered. Beside a deep picture input 0 has R, G, B and A in any case, black
  /// where its file lacks them; without a file it is black all over. Files in `shared` are read
  /// once for all that it is given to. Throws ToolError.
  explicit InputPictures(const RenderArguments& arguments, SharedFiles* shared = nullptr);

  /// The flat picture on that input, or null.
  const Picture* at(int input) const;
  /// Input 0's picture.
  const Picture& image() const { return pictures_.front().picture; }
  /// The deep picture, or null.
  const DeepExrSource* deep() const { return deep_.get(); }
  std::shared_ptr<embedded::DeepSource> deepSource() const { return deep_; }
  /// The distance to focus on, in the deep picture if there is one; nothing if there is only
  /// background. Throws ToolError.
  std::optional<float> focusDistance(const Node& node, const FocusPoint& point) const;
  /// The file on that input, or empty.
  std::string fileOf(int input) const;

  /// Connects the pictures to the node by operators that must outlive it, as this must. May be
  /// called for several nodes, from any thread; they share the pixels. Throws ToolError
  /// (RenderFailed) if the node refuses one.
  ConnectedInputs connectTo(Node& node) const;
  /// Puts other pictures in the places of input 0's and of the deep one (null: none).
  void reconnect(Node& node, const Picture& image, std::shared_ptr<embedded::DeepSource> deep,
                 ConnectedInputs& connected) const;

 private:
  void numberChannels() const;
  const std::vector<embedded::Image>& images() const;
  void connect(Node& node, int input, std::unique_ptr<DD::Image::Op> op,
               ConnectedInputs& connected) const;

  std::string imageFile_;  // empty if input 0 is black
  std::vector<InputPicture> pictures_;
  std::shared_ptr<DeepExrSource> deep_;
  mutable std::once_flag imagesMade_;
  mutable std::vector<embedded::Image> images_;  // of the pictures, as the host wants them
};

}  // namespace drevintool
