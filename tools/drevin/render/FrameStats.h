#pragma once

/// A rendered frame in figures, for logs.

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "inspect/ValueRange.h"
#include "picture/OutputPicture.h"
#include "render/ChannelPlan.h"
#include "render/Report.h"
#include "sequence/FrameTask.h"

namespace drevintool {

struct ChannelStats {
  std::string name;  ///< in the file
  ValueRange range;  ///< as written
};

struct FrameStats {
  std::uint64_t pixels = 0;
  std::uint64_t notFinite = 0;                ///< pixels of the input, or deep samples
  std::optional<std::uint64_t> samples;       ///< of a deep picture that were read
  std::optional<std::uint64_t> bytesWritten;  ///< none for what became no file of its own
  std::vector<ChannelStats> channels;         ///< those that the node made
};

/// The ranges of the rendered channels of a result; bytes, samples and what is not finite are left
/// to the caller.
FrameStats statsOf(const OutputPicture& output, const std::vector<PlannedChannel>& plan);

/// {"pixels", "samples", "notFinite", "bytesWritten", "channels": {NAME: {"min", "max", "nan",
/// "infinite"}}}; "samples" is null for a flat picture, "bytesWritten" for one that became
/// no file of its own.
nlohmann::ordered_json statsJson(const FrameStats& stats);

/// "frame=12 view=left read=0.1 render=1.2 write=0.1 total=1.4 peakMemory=123456789 pixels=1555200
/// samples=0 notFinite=0 notFiniteOut=0 bytes=1234 R=0..1.5 G=0..1.25": words by blanks, seconds
/// and bytes, the channels last, each with its least and most finite value, or none. What is not
/// there is left out. Blanks, '=' and control characters in names become '_'.
std::string statsLine(const FrameTask& task, const FrameStats& stats, const CommandTimes& times);

}  // namespace drevintool
