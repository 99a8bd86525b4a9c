#include "prepare/PreparedInputs.h"

#include "deep/DeepReading.h"
#include "prepare/PreparedDeep.h"
#include "prepare/PreparedPicture.h"

namespace drevintool {

PreparedInputs prepareInputs(const InputPictures& pictures, const Node& node,
                             const PictureFixes& fixes) {
  PreparedInputs prepared;
  const bool flat = pictures.deep() == nullptr;
  const bool black = pictures.fileOf(kImageInput).empty();
  prepared.image = black ? pictures.image()
                         : preparedPicture(pictures.image(), node, fixes, flat, prepared.notes);
  if (flat) return prepared;
  const auto deep =
      readingDeep([&] { return std::make_shared<PreparedDeep>(pictures.deepSource(), fixes); });
  const std::vector<std::string> notes = deep->notes();
  prepared.notes.insert(prepared.notes.end(), notes.begin(), notes.end());
  prepared.deep = deep;
  return prepared;
}

}  // namespace drevintool
