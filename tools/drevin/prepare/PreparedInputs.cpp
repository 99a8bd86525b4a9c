#include "prepare/PreparedInputs.h"

#include <utility>

#include "deep/DeepReading.h"
#include "prepare/PreparedDeep.h"
#include "prepare/PreparedPicture.h"

namespace drevintool {
namespace {

PreparedInputs withDeep(const InputPictures& pictures, const PictureFixes& fixes,
                        PreparedInputs prepared) {
  const auto deep =
      readingDeep([&] { return std::make_shared<PreparedDeep>(pictures.deepSource(), fixes); });
  const std::vector<std::string> notes = deep->notes();
  prepared.notes.insert(prepared.notes.end(), notes.begin(), notes.end());
  prepared.background = deep->background();
  prepared.deep = deep;
  return prepared;
}

}  // namespace

PreparedInputs prepareInputs(const InputPictures& pictures, const Node& node,
                             const PictureFixes& fixes) {
  const bool flat = pictures.deep() == nullptr;
  if (pictures.fileOf(kImageInput).empty()) {
    return withDeep(pictures, fixes, {pictures.image(), nullptr, {}, {}});
  }
  PreparedPicture image = preparedPicture(pictures.image(), node, fixes, flat);
  PreparedInputs prepared{std::move(image.picture), nullptr, std::move(image.notes),
                          image.background};
  return flat ? prepared : withDeep(pictures, fixes, std::move(prepared));
}

}  // namespace drevintool
