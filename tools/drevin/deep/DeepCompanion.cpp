#include "deep/DeepCompanion.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "picture/ChannelNames.h"
#include "picture/ExrLimits.h"
#include "picture/MemoryBudget.h"
#include "render/HostPicture.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

bool hasChannel(const Picture& picture, const std::string& hostName) {
  const auto same = [&](const PictureChannel& channel) { return channel.hostName == hostName; };
  return std::any_of(picture.channels.begin(), picture.channels.end(), same);
}

std::string sizeText(const std::string& path, int width, int height) {
  return path + " is " + std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

Picture emptyPicture(const DeepExrSource& deep) {
  Picture picture;
  picture.path = deep.path();
  picture.display = deep.display();
  picture.width = deep.format().width();
  picture.height = deep.format().height();
  picture.pixelAspect = deep.format().pixel_aspect();
  picture.box = pixelBox(deep.box());
  picture.attributes = deep.attributes();
  return picture;
}

Picture blackPicture(const DeepExrSource& deep) {
  Picture picture = emptyPicture(deep);
  checkMemory(static_cast<double>(picture.box.area()) * sizeof(float), memoryBudget(), deep.path());
  addBlackColours(picture);
  return picture;
}

void addBlackColours(Picture& picture) {
  const auto black = std::make_shared<const std::vector<float>>(picture.box.area());
  for (const char* name : {"R", "G", "B", "A"}) {
    const std::string hostName = hostChannelName(name);
    if (!hasChannel(picture, hostName)) picture.channels.push_back({name, hostName, black});
  }
}

void checkSameFormat(const Picture& picture, const DeepExrSource& deep) {
  const int width = deep.format().width();
  const int height = deep.format().height();
  if (picture.width == width && picture.height == height) return;
  throw ToolError(ExitCode::InputUnreadable,
                  oneLine(sizeText(picture.path, picture.width, picture.height) + ", but " +
                          sizeText(deep.path(), width, height) +
                          "; the flat and the deep picture must be of one size"));
}

Picture withDeepDepths(Picture picture) {
  for (const char* name : {"Z", "deep.front", "deep.back"}) {
    const std::string hostName = hostChannelName(name);
    if (!hasChannel(picture, hostName)) picture.channels.push_back({name, hostName, {}});
  }
  return picture;
}

}  // namespace drevintool
