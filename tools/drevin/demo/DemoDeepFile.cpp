#include "demo/DemoDeepFile.h"

#include <Imath/half.h>
#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfDeepFrameBuffer.h>
#include <OpenEXR/ImfDeepScanLineOutputFile.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfPartType.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <utility>
#include <vector>

#include "picture/AtomicFile.h"
#include "picture/CheckedStream.h"
#include "picture/WrittenFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using Member = float DemoDeepSample::*;

constexpr std::array<std::pair<const char*, Member>, 4> kHalves = {{{"R", &DemoDeepSample::red},
                                                                    {"G", &DemoDeepSample::green},
                                                                    {"B", &DemoDeepSample::blue},
                                                                    {"A", &DemoDeepSample::alpha}}};
constexpr std::array<std::pair<const char*, Member>, 2> kFloats = {
    {{"Z", &DemoDeepSample::front}, {"ZBack", &DemoDeepSample::back}}};

std::uint16_t halfOf(float value) {
  constexpr float kMost = 65504.0F;
  return imath_float_to_half(std::clamp(value, -kMost, kMost));
}

// One row as the picture library takes it: for each channel its values and a pointer to those of
// each pixel. The same memory serves every row.
class Row {
 public:
  explicit Row(int width) : counts_(static_cast<std::size_t>(width)) {
    for (auto& pointers : pointers_)
      pointers.resize(counts_.size());
  }

  void fill(const DemoDeepRow& row) {
    counts_ = row.counts;
    std::size_t channel = 0;
    for (const auto& [name, member] : kHalves) {
      fillChannel(row, member, halfOf, halves_[channel], pointers_[channel]);
      ++channel;
    }
    for (const auto& [name, member] : kFloats) {
      const auto same = [](float value) { return value; };
      fillChannel(row, member, same, floats_[channel - kHalves.size()], pointers_[channel]);
      ++channel;
    }
  }

  Imf::DeepFrameBuffer frame() {
    Imf::DeepFrameBuffer frame;
    frame.insertSampleCountSlice(
        {Imf::UINT, reinterpret_cast<char*>(counts_.data()), sizeof(unsigned), 0});
    std::size_t channel = 0;
    const auto insert = [&](const char* name, Imf::PixelType type, std::size_t size) {
      auto* pointers = reinterpret_cast<char*>(pointers_[channel++].data());
      frame.insert(name, Imf::DeepSlice(type, pointers, sizeof(char*), 0, size));
    };
    for (const auto& [name, member] : kHalves)
      insert(name, Imf::HALF, sizeof(std::uint16_t));
    for (const auto& [name, member] : kFloats)
      insert(name, Imf::FLOAT, sizeof(float));
    return frame;
  }

 private:
  template <typename Value, typename Convert>
  void fillChannel(const DemoDeepRow& row, Member member, Convert convert,
                   std::vector<Value>& values, std::vector<char*>& pointers) const {
    values.clear();
    for (const DemoDeepSample& sample : row.samples)
      values.push_back(convert(sample.*member));
    std::size_t first = 0;
    for (std::size_t column = 0; column < counts_.size(); ++column) {
      pointers[column] = reinterpret_cast<char*>(values.data() + first);
      first += counts_[column];
    }
  }

  std::vector<unsigned> counts_;
  std::array<std::vector<std::uint16_t>, kHalves.size()> halves_;
  std::array<std::vector<float>, kFloats.size()> floats_;
  std::array<std::vector<char*>, kHalves.size() + kFloats.size()> pointers_;
};

Imf::Header headerFor(const DemoDeepPicture& picture) {
  Imf::Header header(picture.width, picture.height());
  header.setType(Imf::DEEPSCANLINE);
  header.compression() = Imf::ZIPS_COMPRESSION;
  for (const auto& [name, member] : kHalves)
    header.channels().insert(name, Imf::Channel(Imf::HALF));
  for (const auto& [name, member] : kFloats)
    header.channels().insert(name, Imf::Channel(Imf::FLOAT));
  return header;
}

void writeRows(const DemoDeepPicture& picture, AtomicFile& place, const std::string& path) {
  CheckedStream stream(place, path);
  Imf::DeepScanLineOutputFile file(stream, headerFor(picture));
  Row memory(picture.width);
  file.setFrameBuffer(memory.frame());
  for (const DemoDeepRow& row : picture.rows) {
    throwIfInterrupted();
    memory.fill(row);
    file.writePixels(1);
  }
}

}  // namespace

void writeDemoDeep(const DemoDeepPicture& picture, const std::string& path) {
  AtomicFile place(path);
  try {
    writeRows(picture, place, path);
  } catch (const ToolError&) {
    throw;
  } catch (const std::exception& error) {
    throw ToolError(ExitCode::OutputNotWritten, oneLine(path + ": " + error.what()));
  }
  place.commit(faultOfWrittenExr);
}

}  // namespace drevintool
