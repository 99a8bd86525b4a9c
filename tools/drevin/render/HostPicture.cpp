#include "render/HostPicture.h"

#include <atomic>
#include <memory>
#include <vector>

#include "DDImage/Thread.h"
#include "picture/FloatSamples.h"

namespace drevintool {
namespace {

// Planes made by many threads, a channel at a time.
class PlaneWork {
 public:
  PlaneWork(const std::vector<const Samples*>& samples, std::vector<FloatSamples>& planes)
      : samples_(samples), planes_(planes) {}

  void run() {
    for (std::size_t i = next_++; i < samples_.size(); i = next_++)
      planes_[i] = floatSamples(*samples_[i]);
  }

 private:
  const std::vector<const Samples*>& samples_;
  std::vector<FloatSamples>& planes_;
  std::atomic<std::size_t> next_{0};
};

std::vector<FloatSamples> planesOf(const std::vector<const Samples*>& samples) {
  std::vector<FloatSamples> planes(samples.size());
  PlaneWork work(samples, planes);
  const auto run = [](unsigned /*index*/, unsigned /*count*/, void* self) {
    static_cast<PlaneWork*>(self)->run();
  };
  DD::Image::Thread::spawn(run, DD::Image::Thread::numCPUs, &work);
  DD::Image::Thread::wait(&work);
  return planes;
}

}  // namespace

embedded::Image hostImage(const Picture& picture) {
  embedded::Image image;
  image.format = DD::Image::Format(picture.width, picture.height, picture.pixelAspect);
  image.box = hostBox(picture.box);
  std::vector<DD::Image::Channel> numbers;
  std::vector<const Samples*> samples;
  for (const PictureChannel& channel : picture.channels) {
    const DD::Image::Channel number = DD::Image::getChannel(channel.hostName.c_str());
    if (number == DD::Image::Chan_Black) continue;
    numbers.push_back(number);
    samples.push_back(&channel.samples);
  }
  const std::vector<FloatSamples> planes = planesOf(samples);
  for (std::size_t i = 0; i < planes.size(); ++i)
    image.planes[numbers[i]] = planes[i];
  return image;
}

void addMissingColours(embedded::Image& image) {
  const auto pixels =
      static_cast<std::size_t>(image.box.w()) * static_cast<std::size_t>(image.box.h());
  for (const DD::Image::Channel colour : DD::Image::ChannelSet(DD::Image::Mask_RGB)) {
    if (image.planes.count(colour) == 0) {
      image.planes[colour] = std::make_shared<embedded::Plane>(pixels);
    }
  }
}

DD::Image::Box hostBox(const PixelBox& box) {
  return {box.x, box.y, box.r, box.t};
}

PixelBox pixelBox(const DD::Image::Box& box) {
  return {box.x(), box.y(), box.r(), box.t()};
}

}  // namespace drevintool
