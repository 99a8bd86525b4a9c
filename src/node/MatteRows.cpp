#include "node/MatteRows.h"

namespace drevin {

using DD::Image::Chan_Black;
using DD::Image::Channel;
using DD::Image::Row;

dvMatteRows::dvMatteRows(const dvMattes& mattes, int y, const dvColumns& columns) {
  if (mattes.from == nullptr || mattes.read.empty()) return;
  row_ = std::make_unique<Row>(columns.left, columns.right);
  row_->get(*mattes.from, y, columns.left, columns.right, mattes.read);
  const auto values = [this](Channel channel) {
    return channel == Chan_Black ? nullptr : (*row_)[channel];
  };
  bloom_ = values(mattes.bloom);
  defocus_ = values(mattes.defocus);
  chromatic_ = values(mattes.chromatic);
}

}  // namespace drevin
