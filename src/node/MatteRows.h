#pragma once

/// The mattes of a source row.

#include <memory>

#include "DDImage/Iop.h"
#include "DDImage/Row.h"
#include "defocus/RowSplatter.h"

namespace drevin {

/// The mattes that are in use; Chan_Black for a channel that is not.
struct dvMattes {
  DD::Image::Iop* from = nullptr;  ///< null: none is in use
  DD::Image::ChannelSet read;
  DD::Image::Channel bloom = DD::Image::Chan_Black;
  DD::Image::Channel defocus = DD::Image::Chan_Black;
  DD::Image::Channel chromatic = DD::Image::Chan_Black;
};

/// Values of one row by absolute column; null where a matte is not in use. Many threads may read
/// them: a host row may make what it lacks on the first reading, so they are looked up once.
class dvMatteRows {
 public:
  dvMatteRows() = default;
  dvMatteRows(const dvMattes& mattes, int y, const dvColumns& columns);

  const float* bloom() const { return bloom_; }
  const float* defocus() const { return defocus_; }
  const float* chromatic() const { return chromatic_; }

 private:
  std::unique_ptr<DD::Image::Row> row_;
  const float* bloom_ = nullptr;
  const float* defocus_ = nullptr;
  const float* chromatic_ = nullptr;
};

}  // namespace drevin
