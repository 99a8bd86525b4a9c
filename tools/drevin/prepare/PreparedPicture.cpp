#include "prepare/PreparedPicture.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

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

// The depth for what has none, among those of the plane if that is asked for.
std::optional<float> backgroundDepth(const BackgroundFix& fix, const DepthCodes& codes,
                                     const Values& values) {
  if (!fix.farthest) return fix.depth;
  FarthestDepth farthest(codes);
  for (const float value : values)
    farthest.add(value);
  return farthest.raw();
}

Samples mendedDepth(const DepthPlane& plane, const Node& node, const PictureFixes& fixes,
                    Notes& notes) {
  const DepthCodes codes{depthStyleOf(node), plane.half};
  auto values = std::make_shared<Values>(*plane.values);
  if (fixes.edges) notes.push_back(edgesNote(fixEdges(plane, *values), values->size()));
  if (fixes.background) {
    const std::optional<float> depth = backgroundDepth(*fixes.background, codes, *values);
    const std::size_t count = depth ? fixBackground(codes, *depth, *values) : 0;
    notes.push_back(backgroundNote(*fixes.background, depth, count, values->size(), "pixels"));
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

Picture preparedPicture(const Picture& picture, const Node& node, const PictureFixes& fixes,
                        bool withDepth, Notes& notes) {
  Picture prepared = picture;
  const PictureChannel* depth = chosenDepth(picture, node);
  if (withDepth && fixes.ofDepth() && depth != nullptr) {
    prepared.channels[static_cast<std::size_t>(depth - picture.channels.data())].samples =
        mendedDepth(depthPlane(picture, *depth), node, fixes, notes);
  }
  if (fixes.mostColour) dimColours(prepared, *fixes.mostColour, notes);
  return prepared;
}

}  // namespace drevintool
