#include "engine/EngineFrame.h"

#include <algorithm>
#include <cstring>

#include "engine/ThreadParallel.h"

namespace drevin::test {

EngineFrame::EngineFrame(const LiteralScene& scene) : imaging_(scene) {
  const dvSplatFrame& frame = imaging_.settings().frame;
  settings_.splat = frame.splat;
  settings_.bank = frame.bank;
  settings_.slices = static_cast<std::size_t>(frame.slices);
  settings_.channels = imaging_.splatted();
  settings_.groups = splatGroups(*frame.bank, frame.splat.chromatic, settings_.channels);
}

EngineLines EngineFrame::lines(const dvFrameBox& box) const {
  EngineLines lines;
  lines.box = box;
  const dvColumns columns{box.left - padding(), box.right + padding()};
  for (int y = box.bottom - padding(); y < box.top + padding(); ++y) {
    dvSplatLineMaker maker(settings_, y);
    addFlatSources(imaging_.sourceRow(y, columns).row, imaging_.settings().blur,
                   imaging_.settings().frame.formatWidth, columns, maker);
    lines.rows.push_back(maker.line());
  }
  for (const dvSplatLine& line : lines.rows)
    lines.places.push_back(&line);
  return lines;
}

dvFramePlanes EngineFrame::make(const EngineLines& lines, dvParallel& parallel,
                                dvTileChoice choice) const {
  dvFramePlanes planes(channels().size(), dvFramePlane<float>(lines.box));
  dvFrameMaker maker(settings_, padding(), parallel, choice);
  maker.make(lines.box, lines.places, planes, [](double /*done*/) {});
  return planes;
}

dvFramePlanes EngineFrame::make(const EngineLines& lines, dvTileChoice choice) const {
  ThreadParallel parallel(2);
  return make(lines, parallel, choice);
}

dvFrameBox formatBox(const LiteralScene& scene) {
  return {0, 0, scene.image.formatWidth, scene.image.formatHeight};
}

bool sameBits(const dvFramePlanes& a, const dvFramePlanes& b) {
  const dvFrameBox& box = a.front().box();
  const auto bytes = static_cast<std::size_t>(box.width()) *
                     static_cast<std::size_t>(box.height()) * sizeof(float);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](const auto& one, const auto& two) {
    return std::memcmp(one.row(box.bottom), two.row(box.bottom), bytes) == 0;
  });
}

}  // namespace drevin::test
