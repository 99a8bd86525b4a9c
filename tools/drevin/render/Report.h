#pragma once

/// The report of a render: what was done, with which controls, and how long it took.

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Render.h"
#include "arguments/RenderArguments.h"
#include "controls/HeaderCamera.h"
#include "render/InputPictures.h"

namespace drevintool {

/// Wall time in seconds of the steps that the command itself takes.
struct CommandTimes {
  double read = 0.0;
  double write = 0.0;
  double total = 0.0;
};

/// What the command itself knows of the render.
struct CommandRecord {
  CommandTimes times;
  std::vector<std::string> warnings;
  std::vector<std::string> mended;  ///< what was mended in the pictures, a line for each fix
  std::map<std::string, CameraFinding> camera;  ///< by the names of cameraKeys; empty: none
};

/// The report as JSON: node (class, version, build string, hash),
/// format, box, every control with its value and state, the
/// camera with the source of each value, file and request of each input, what was mended in the
/// pictures, warnings of the command and of the node, threads, seconds (read, aperture, estimate,
/// kernels, defocus, write, total) and the peak memory in bytes. A deep input has its part, the
/// order in which its samples were served, how many were read, how many of them are thick, how many
/// the fullest pixel has, and how often a band of rows was read; that happens while rows are made,
/// and its time is part of theirs. What the result holds is added by its maker, under "stats".
nlohmann::ordered_json renderReport(const RenderArguments& arguments, const Node& node,
                                    const InputPictures& pictures,
                                    const embedded::RenderResult& result,
                                    const CommandRecord& record);

/// Of a picture that was left alone because it was there already: `command`, `output`, `skipped`.
nlohmann::ordered_json skippedReport(const RenderArguments& arguments);

/// What --report takes for standard output.
constexpr const char* kStandardOutput = "-";

/// Writes a report to a file, which appears when it is whole, or to kStandardOutput. Throws
/// ToolError (OutputNotWritten) if the file cannot be written.
void writeReport(const nlohmann::ordered_json& report, const std::string& path);

}  // namespace drevintool
