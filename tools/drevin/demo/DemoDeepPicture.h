#pragma once

/// A deep picture of the demo: what each pixel meets, one thing behind the other.

#include <vector>

namespace drevintool {

/// A point (front = back) or a stretch of something thin that fills its depth evenly.
struct DemoDeepSample {
  float front = 0.0F;  ///< m along the view
  float back = 0.0F;
  float alpha = 0.0F;  ///< share it takes of the light from behind it, in (0, 1]
  float red = 0.0F;    ///< linear, premultiplied
  float green = 0.0F;
  float blue = 0.0F;
};

struct DemoDeepRow {
  std::vector<unsigned> counts;         ///< samples of each pixel
  std::vector<DemoDeepSample> samples;  ///< pixel by pixel, nearest first
};

struct DemoDeepPicture {
  int width = 0;
  std::vector<DemoDeepRow> rows;  ///< the top row first

  int height() const { return static_cast<int>(rows.size()); }
};

}  // namespace drevintool
