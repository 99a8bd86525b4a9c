#include <fmt/format.h>

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "DDImage/Thread.h"
#include "frames/ExrFile.h"
#include "frames/Figures.h"
#include "frames/FrameScenes.h"
#include "frames/Measure.h"
#include "picture/ExrReader.h"
#include "picture/ExrWriter.h"
#include "render/RenderSetup.h"
#include "tool/ScratchFolder.h"

namespace drevin::bench {

namespace {

using drevintool::OutputPicture;
using drevintool::Picture;

bool sameSamples(const drevintool::Samples& a, const drevintool::Samples& b) {
  const auto equalsOther = [&](const auto& values) {
    return *values == *std::get<std::decay_t<decltype(values)>>(b);
  };
  return a.index() == b.index() && std::visit(equalsOther, a);
}

/// 0 if a picture that was read is what was written, else infinite.
double errorOf(const Picture& read, const OutputPicture& written) {
  std::map<std::string, drevintool::Samples> samples;
  for (const drevintool::PictureChannel& channel : read.channels)
    samples[channel.fileName] = channel.samples;
  bool same = samples.size() == written.channels.size();
  for (const drevintool::OutputChannel& channel : written.channels) {
    const auto found = samples.find(channel.fileName);
    same = same && found != samples.end() && sameSamples(found->second, channel.samples);
  }
  return same ? 0.0 : std::numeric_limits<double>::infinity();
}

TableLine exrLine(const TablePlan& plan, bool writes) {
  const drevintool::testing::ScratchFolder folder;
  const std::string path = folder.file("picture.exr");
  // As renderers write them: colours in half.
  const OutputPicture picture =
      outputPicture(frameScene("scene", plan.fourK.width, plan.fourK.height), true);
  const unsigned most = DD::Image::Thread::numCPUs;
  std::map<unsigned, std::vector<double>> times;
  Picture copy;
  const std::function<void()> write = [&] { drevintool::writeExr(picture, path); };
  const std::function<void()> read = [&] { copy = drevintool::readExr(path); };
  write();
  for (int round = 0; round < plan.rounds; ++round) {
    for (const unsigned threads : {1U, most}) {
      drevintool::chooseThreads(threads);
      times[threads].push_back(secondsOf(writes ? write : read));
    }
  }
  read();
  TableLine line;
  line.figure = fmt::format("{} a 4K picture, RGBA in half and depth, ZIP, threads 1 to {}",
                            writes ? "writing" : "reading", most);
  const double one = median(times[1]);
  const double all = median(times[most]);
  line.ours = fmt::format("{} to {}", secondsText(one), secondsText(all));
  line.value = timesText(one / all);
  line.error = errorOf(copy, picture);
  line.mostError = 0.0;
  return line;
}

}  // namespace

std::vector<Figure> exrFigures(const TablePlan& plan) {
  return {{"exr, reading", [plan] { return exrLine(plan, false); }},
          {"exr, writing", [plan] { return exrLine(plan, true); }}};
}

}  // namespace drevin::bench
