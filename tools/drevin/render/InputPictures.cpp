#include "render/InputPictures.h"

#include <utility>

#include "deep/DeepCompanion.h"
#include "deep/DeepReading.h"
#include "picture/ExrReader.h"
#include "render/HostPicture.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {

namespace {

Picture readFile(const std::string& path, SharedFiles* shared) {
  return shared == nullptr ? readExr(path) : shared->picture(path);
}

// Made ready to stand beside the deep picture if there is one.
Picture asImage(Picture picture, const DeepExrSource* deep) {
  if (deep != nullptr) {
    checkSameFormat(picture, *deep);
    addBlackColours(picture);
  }
  return picture;
}

}  // namespace

InputPictures::InputPictures(const RenderArguments& arguments, SharedFiles* shared)
    : imageFile_(arguments.input) {
  if (!arguments.deep.empty()) {
    deep_ = std::make_shared<DeepExrSource>(arguments.deep, arguments.deepPart, arguments.view);
  }
  pictures_.push_back({kImageInput, imageFile_.empty()
                                        ? blackPicture(*deep_)
                                        : asImage(readFile(imageFile_, shared), deep_.get())});
  if (!arguments.kernel.empty())
    pictures_.push_back({kKernelInput, readFile(arguments.kernel, shared)});
  if (!arguments.mattes.empty())
    pictures_.push_back({kMattesInput, readFile(arguments.mattes, shared)});
  numberChannels();
}

// The host numbers channels as it hears of them: in the order of reading, not of the threads that
// frames are then rendered on.
void InputPictures::numberChannels() const {
  for (const InputPicture& entry : pictures_) {
    for (const PictureChannel& channel : entry.picture.channels)
      DD::Image::getChannel(channel.hostName.c_str());
  }
}

const Picture* InputPictures::at(int input) const {
  for (const InputPicture& entry : pictures_) {
    if (entry.input == input) return &entry.picture;
  }
  return nullptr;
}

std::string InputPictures::fileOf(int input) const {
  if (input == kImageInput) return imageFile_;
  if (input == kDeepInput) return deep_ ? deep_->path() : std::string();
  const Picture* picture = at(input);
  return picture == nullptr ? std::string() : picture->path;
}

std::optional<float> InputPictures::focusDistance(const Node& node, const FocusPoint& point) const {
  if (!deep_) return drevintool::focusDistance(image(), node, point);
  return readingDeep([&] { return drevintool::focusDistance(*deep_, node, point); });
}

// Made when the first node wants them: pictures that were read ahead are kept as they were read.
const std::vector<embedded::Image>& InputPictures::images() const {
  std::call_once(imagesMade_, [this] {
    for (const InputPicture& entry : pictures_) {
      images_.push_back(hostImage(entry.picture));
      if (entry.input == kImageInput) addMissingColours(images_.back());
    }
  });
  return images_;
}

ConnectedInputs InputPictures::connectTo(Node& node) const {
  ConnectedInputs connected;
  for (std::size_t i = 0; i < pictures_.size(); ++i)
    connect(node, pictures_[i].input, std::make_unique<embedded::ImageInput>(images()[i]),
            connected);
  if (deep_) connect(node, kDeepInput, std::make_unique<embedded::DeepInput>(deep_), connected);
  return connected;
}

void InputPictures::reconnect(Node& node, const Picture& image,
                              std::shared_ptr<embedded::DeepSource> deep,
                              ConnectedInputs& connected) const {
  embedded::Image seen = hostImage(image);
  addMissingColours(seen);
  connect(node, kImageInput, std::make_unique<embedded::ImageInput>(std::move(seen)), connected);
  if (!deep) return;
  connect(node, kDeepInput, std::make_unique<embedded::DeepInput>(std::move(deep)), connected);
}

void InputPictures::connect(Node& node, int input, std::unique_ptr<DD::Image::Op> op,
                            ConnectedInputs& connected) const {
  connected.push_back(std::move(op));
  if (node.connect(input, connected.back().get())) return;
  throw ToolError(
      ExitCode::RenderFailed,
      oneLine(fileOf(input) + ": the node does not take it as its input " + std::to_string(input)));
}

}  // namespace drevintool
