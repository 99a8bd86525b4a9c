#include "DDImage/DeepComposite.h"

namespace DD {
namespace Image {

void CombineOverlappingSamples(const ChannelMap& channels, const DeepPixel& in, DeepOutPixel& out);

}  // namespace Image
}  // namespace DD
