#include "DDImage/DeepPlane.h"

namespace DD {
namespace Image {

namespace {

std::size_t pixelsOf(const Box& box) {
  return box.empty() ? 0 : static_cast<std::size_t>(box.w()) * static_cast<std::size_t>(box.h());
}

}  // namespace

DeepPlane::DeepPlane() : content_(std::make_shared<Content>()) {}

bool DeepPlane::covers(int y, int x) const {
  return x >= box().x() && x < box().r() && y >= box().y() && y < box().t();
}

std::size_t DeepPlane::index(int y, int x) const {
  return static_cast<std::size_t>(y - box().y()) * static_cast<std::size_t>(box().w()) +
         static_cast<std::size_t>(x - box().x());
}

DeepPixel DeepPlane::getPixel(int y, int x) const {
  const std::size_t i = index(y, x);
  const std::size_t begin = i == 0 ? 0 : content_->ends[i - 1];
  return {content_->channels, content_->values.data() + begin, content_->ends[i] - begin,
          content_->ordering};
}

std::size_t DeepPlane::getSampleCount(int y, int x) const {
  return getPixel(y, x).getSampleCount();
}

std::size_t DeepPlane::getTotalSampleCount() const {
  return channels().empty() ? 0 : content_->values.size() / channels().size();
}

DeepOutputPlane::DeepOutputPlane(const ChannelSet& channels, const Box& box,
                                 DeepPixel::Ordering ordering)
    : DeepPlane(std::make_shared<Content>()) {
  content().channels = ChannelMap(channels);
  content().box = box;
  content().ordering = ordering;
  content().ends.reserve(pixelsOf(box));
}

void DeepOutputPlane::addValues(const float* values, std::size_t count) {
  content().values.insert(content().values.end(), values, values + count);
  content().ends.push_back(content().values.size());
}

void DeepOutputPlane::fill() {
  content().ends.resize(pixelsOf(box()), content().values.size());
}

}  // namespace Image
}  // namespace DD
