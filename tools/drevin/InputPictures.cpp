#include "InputPictures.h"

#include <utility>

#include "ExitCode.h"
#include "ExrReader.h"
#include "HostPicture.h"
#include "OneLine.h"

namespace drevintool {

InputPictures::InputPictures(const RenderArguments& arguments) {
  pictures_.push_back({kImageInput, readExr(arguments.input)});
  if (!arguments.kernel.empty()) pictures_.push_back({kKernelInput, readExr(arguments.kernel)});
  if (!arguments.mattes.empty()) pictures_.push_back({kMattesInput, readExr(arguments.mattes)});
}

const Picture* InputPictures::at(int input) const {
  for (const InputPicture& entry : pictures_) {
    if (entry.input == input) return &entry.picture;
  }
  return nullptr;
}

void InputPictures::connectTo(Node& node) {
  for (const InputPicture& entry : pictures_) {
    embedded::Image image = hostImage(entry.picture);
    if (entry.input == kImageInput) addMissingColours(image);
    operators_.push_back(std::make_unique<embedded::ImageInput>(std::move(image)));
    if (!node.connect(entry.input, operators_.back().get())) {
      throw ToolError(ExitCode::RenderFailed,
                      oneLine(entry.picture.path + ": the node does not take it as its input " +
                              std::to_string(entry.input)));
    }
  }
}

}  // namespace drevintool
