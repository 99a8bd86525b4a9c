#pragma once

/// A picture of the demo, in plain planes.

#include <map>
#include <string>
#include <vector>

namespace drevintool {

struct DemoPicture {
  int width = 0;
  int height = 0;
  /// By the names under which they are written; width * height values, the top row first.
  std::map<std::string, std::vector<float>> planes;
};

}  // namespace drevintool
