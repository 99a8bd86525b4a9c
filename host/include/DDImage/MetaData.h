#pragma once

/// Named texts that travel with a picture.

#include <cstddef>
#include <map>
#include <string>

#include "DDImage/Export.h"

namespace DD {
namespace Image {
namespace MetaData {

class DD_EXPORT Bundle {
 public:
  void setData(const std::string& key, const std::string& value) { data_[key] = value; }
  bool empty() const { return data_.empty(); }
  std::size_t size() const { return data_.size(); }

 private:
  std::map<std::string, std::string> data_;
};

}  // namespace MetaData
}  // namespace Image
}  // namespace DD
