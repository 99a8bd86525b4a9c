#pragma once

/// The pictures that a render reads, and their places on the node.

#include <memory>
#include <vector>

#include "Arguments.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "Picture.h"

namespace drevintool {

/// Input numbers of the node.
constexpr int kImageInput = 0;
constexpr int kKernelInput = 1;
constexpr int kMattesInput = 4;

/// A picture and the input that it is for.
struct InputPicture {
  int input;
  Picture picture;
};

class InputPictures {
 public:
  /// Reads the files that the arguments name. Throws ToolError.
  explicit InputPictures(const RenderArguments& arguments);

  /// The picture on that input, or null.
  const Picture* at(int input) const;
  /// Input 0's picture.
  const Picture& image() const { return pictures_.front().picture; }

  /// Connects the pictures to the node; they must outlive it. Throws ToolError (RenderFailed) if
  /// the node refuses one.
  void connectTo(Node& node);

 private:
  std::vector<InputPicture> pictures_;
  std::vector<std::unique_ptr<embedded::ImageInput>> operators_;
};

}  // namespace drevintool
