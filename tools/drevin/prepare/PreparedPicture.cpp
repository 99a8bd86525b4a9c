#include "prepare/PreparedPicture.h"

#include <algorithm>
#include <array>
#include <memory>

#include "depth/BackgroundFinding.h"
#include "depth/DepthChoice.h"
#include "depth/DepthCodes.h"
#include "depth/DepthPlane.h"
#include "picture/FloatSamples.h"
#include "prepare/DepthFixes.h"
#include "prepare/Fireflies.h"
#include "prepare/FixNotes.h"

namespace drevintool {
namespace {

using Values = std::vector<float>;
using Notes = std::vector<std::string>;

Samples mendedDepth(const Picture& picture, const PictureChannel& channel, const Node& node,
                    const PictureFixes& fixes, PreparedPicture& prepared) {
  const DepthPlane plane = depthPlane(picture, channel);
  auto values = std::make_shared<Values>(*plane.values);
  if (fixes.edges) prepared.notes.push_back(edgesNote(fixEdges(plane, *values), values->size()));
  if (fixes.background) {
    const BackgroundFinding background = findBackground(picture, channel, depthStyleOf(node));
    const std::optional<float> depth = backgroundDepth(*fixes.background, background, *values);
    const std::size_t count = depth ? fixBackground(background, *depth, *values) : 0;
    prepared.notes.push_back(
        backgroundNote(*fixes.background, depth, count, values->size(), "pixels",
                       background.isOrdinary() ? background.value : std::nullopt));
    if (depth) prepared.background = background.codes.distance(*depth);
  }
  return FloatSamples(values);
}

PictureChannel* channelNamed(Picture& picture, const std::string& hostName) {
  const auto same = [&](const PictureChannel& channel) { return channel.hostName == hostName; };
  const auto found = std::find_if(picture.channels.begin(), picture.channels.end(), same);
  return found == picture.channels.end() || found->isUint() ? nullptr : &*found;
}

void dimColours(Picture& picture, float most, Notes& notes) {
  const std::array<PictureChannel*, 3> channels = {channelNamed(picture, "rgba.red"),
                                                   channelNamed(picture, "rgba.green"),
                                                   channelNamed(picture, "rgba.blue")};
  if (std::count(channels.begin(), channels.end(), nullptr) > 0) {
    notes.push_back(noColoursNote(most, "the picture"));
    return;
  }
  std::array<std::shared_ptr<Values>, 3> colours;
  for (std::size_t c = 0; c < channels.size(); ++c)
    colours[c] = std::make_shared<Values>(*floatSamples(channels[c]->samples));
  const std::size_t pixels = picture.box.area();
  std::size_t count = 0;
  for (std::size_t i = 0; i < pixels; ++i)
    count += dimColour((*colours[0])[i], (*colours[1])[i], (*colours[2])[i], most) ? 1 : 0;
  notes.push_back(firefliesNote(most, count, pixels, "pixels"));
  if (count == 0) return;
  for (std::size_t c = 0; c < channels.size(); ++c)
    channels[c]->samples = FloatSamples(colours[c]);
}

}  // namespace

PreparedPicture preparedPicture(const Picture& picture, const Node& node, const PictureFixes& fixes,
                                bool withDepth) {
  PreparedPicture prepared;
  prepared.picture = picture;
  const PictureChannel* depth = chosenDepth(picture, node);
  if (withDepth && fixes.ofDepth() && depth != nullptr) {
    const auto place = static_cast<std::size_t>(depth - picture.channels.data());
    prepared.picture.channels[place].samples = mendedDepth(picture, *depth, node, fixes, prepared);
  }
  if (fixes.mostColour) dimColours(prepared.picture, *fixes.mostColour, prepared.notes);
  return prepared;
}

}  // namespace drevintool
