#include "sheet/SheetCommand.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "controls/CameraOption.h"
#include "controls/FocusControl.h"
#include "controls/PluginSearch.h"
#include "controls/PluginSimd.h"
#include "render/RenderSetup.h"
#include "render/Report.h"
#include "render/ResultPicture.h"
#include "sheet/BitmapFont.h"
#include "sheet/SheetLayout.h"
#include "sheet/SheetRender.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void failUsage(const std::string& line) {
  throw ToolError(ExitCode::Usage, oneLine(line));
}

void checkOneFrame(const RenderArguments& arguments) {
  if (arguments.frames.size() <= 1 && arguments.views.size() <= 1) return;
  failUsage("--frames, --views: a sheet shows one frame; name one, such as --frames 12");
}

// Values of a camera win over the controls, so that varying those would show nothing.
void checkCameraLeaves(const std::string& text, const SheetPlan& sheet) {
  if (text.empty()) return;
  const CameraOption camera(text);
  for (const CameraKey& key : cameraKeys()) {
    if (sheet.names().count(key.control) == 0 || camera.curves().count(key.name) == 0) continue;
    failUsage(std::string("--vary ") + key.control + ": --camera gives " + key.name +
              ", which wins over it; leave that out of the camera");
  }
}

// A point wins over the control, so that varying it would show nothing.
void checkFocusLeaves(const SheetArguments& arguments, const SheetPlan& sheet) {
  if (!arguments.focus || sheet.names().count(kFocusControl) == 0) return;
  failUsage(std::string("--vary ") + kFocusControl +
            ": --focus-at sets the focus too; give one or the other");
}

std::vector<ControlChanges> changesOf(const ControlChanges& base, const SheetPlan& sheet) {
  std::vector<ControlChanges> changes;
  changes.reserve(sheet.pictures());
  for (std::size_t picture = 0; picture < sheet.pictures(); ++picture)
    changes.push_back(base.with(sheet.settingsOf(picture)));
  return changes;
}

std::vector<std::string> captionOf(const SheetPlan& sheet, std::size_t picture) {
  std::vector<std::string> lines;
  for (const ControlSetting& setting : sheet.settingsOf(picture)) {
    lines.push_back(shortenedCaption(printableText(setting.name + " " + setting.value)));
  }
  return lines;
}

SheetContents contentsOf(const SheetPlan& sheet, const std::vector<PixelSize>& sizes) {
  SheetContents contents;
  contents.columns = sheet.gridColumns();
  contents.pictures = sizes;
  for (std::size_t picture = 0; picture < sheet.pictures(); ++picture)
    contents.captions.push_back(captionOf(sheet, picture));
  return contents;
}

// What is shown: the picture's box, or what of the region lies in it.
PixelSize wholeSize(const RenderArguments& arguments, const Picture& picture) {
  PixelBox box = picture.box;
  if (arguments.region) {
    const PixelBox& region = *arguments.region;
    box = {std::max(box.x, region.x), std::max(box.y, region.y), std::min(box.r, region.r),
           std::min(box.t, region.t)};
  }
  return {std::max(1, static_cast<int>(box.width())), std::max(1, static_cast<int>(box.height()))};
}

// Half for --type keep only if the picture's own colours are.
OutputFormat sheetFormat(OutputFormat format, const Picture& picture) {
  if (format.type != ResultType::Input) return format;
  format.type = ResultType::Float;
  for (const PictureChannel& channel : picture.channels) {
    const bool half = std::holds_alternative<HalfSamples>(channel.samples);
    if (channel.hostName == "rgba.red" && half) format.type = ResultType::Half;
  }
  return format;
}

SheetShare shareOf(const RenderArguments& arguments, const FrameTask& task, int width) {
  SheetShare share;
  share.arguments = arguments;
  share.arguments.channels = {"rgb"};
  share.arguments.format = {};
  share.task = task;
  share.pictures = std::make_shared<const InputPictures>(arguments);
  const Picture& image = share.pictures->image();
  share.whole = wholeSize(arguments, image);
  share.small = sheetPictureSize(share.whole, image.pixelAspect, width);
  return share;
}

SheetLayout layoutOf(const SheetPlan& sheet, const std::vector<SheetPicture>& pictures, int width) {
  std::vector<PixelSize> sizes;
  sizes.reserve(pictures.size());
  for (const SheetPicture& picture : pictures)
    sizes.push_back(picture.picture.size);
  return {contentsOf(sheet, sizes), width};
}

SheetCanvas drawn(const SheetPlan& sheet, const SheetLayout& layout,
                  const std::vector<SheetPicture>& pictures) {
  SheetCanvas canvas(layout.size());
  for (std::size_t picture = 0; picture < pictures.size(); ++picture) {
    const auto [x, y] = layout.pictureAt(picture);
    canvas.drawPicture(x, y, pictures[picture].picture);
    const std::vector<std::string> caption = captionOf(sheet, picture);
    for (std::size_t line = 0; line < caption.size(); ++line) {
      const auto [left, top] = layout.captionAt(picture, line);
      canvas.drawText(left, top, layout.dotSize(), caption[line]);
    }
  }
  return canvas;
}

Json pictureJson(const SheetPlan& sheet, const SheetLayout& layout, std::size_t number,
                 const SheetPicture& picture) {
  const auto [x, y] = layout.pictureAt(number);
  Json json;
  for (const ControlSetting& setting : sheet.settingsOf(number))
    json["varied"][setting.name] = setting.value;
  json["at"] = {x, y};
  json["size"] = {picture.picture.size.width, picture.picture.size.height};
  json["render"] = *picture.report;
  return json;
}

Json sheetReport(const RenderArguments& arguments, const SheetPlan& sheet,
                 const SheetLayout& layout, const std::vector<SheetPicture>& pictures) {
  Json report;
  report["command"] = "drevin " DREVIN_VERSION;
  report["output"] = arguments.output;
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(arguments.output, error);
  report["bytesWritten"] = error ? Json() : Json(bytes);
  report["size"] = {layout.size().width, layout.size().height};
  report["columns"] = sheet.gridColumns();
  report["rows"] = sheet.gridRows();
  report["pictures"] = Json::array();
  for (std::size_t number = 0; number < pictures.size(); ++number)
    report["pictures"].push_back(pictureJson(sheet, layout, number, pictures[number]));
  return report;
}

// Faults of the command line show before anything is read.
void checkEachPicture(const DD::Image::Op::Description& description,
                      const RenderArguments& arguments, const SequencePlan& plan,
                      const std::vector<ControlChanges>& changes) {
  for (const ControlChanges& ofPicture : changes)
    checkControls(arguments, plan, {description, ofPicture, false});
  plan.checkOutputs();
}

// As it will be, unless settings change the size of pictures.
void checkExpectedSize(const SheetPlan& sheet, const PixelSize& small) {
  SheetLayout(contentsOf(sheet, std::vector<PixelSize>(sheet.pictures(), small)), small.width);
}

void writeSheet(const SheetArguments& arguments, const SheetPlan& sheet, const SheetShare& share,
                const std::vector<SheetPicture>& pictures) {
  for (const std::string& name : controlsWithoutEffect(sheet, pictures))
    printWarning("--vary " + name + ": no picture differs by it");
  const SheetLayout layout = layoutOf(sheet, pictures, share.small.width);
  const OutputFormat format = sheetFormat(arguments.format, share.pictures->image());
  writePicture(drawn(sheet, layout, pictures).takeOutput(format), share.arguments.output);
  if (share.arguments.report.empty()) return;
  writeReport(sheetReport(share.arguments, sheet, layout, pictures), share.arguments.report);
}

}  // namespace

int runSheet(const SheetArguments& arguments) {
  const SheetPlan sheet(arguments);
  checkOneFrame(arguments);
  checkFocusLeaves(arguments, sheet);
  const SequencePlan plan(arguments);
  plan.checkInputsStay();
  const FrameTask& task = plan.tasks().front();
  RenderArguments one = plan.argumentsOf(task);
  one.report = FramePattern(arguments.report).path(task.frame.value_or(0), task.view);
  checkCameraLeaves(one.camera, sheet);
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  warnOfSimd(description);
  const unsigned threads = setUpProcess(arguments);
  const ControlChanges base(arguments, Node(description), sheet.names());
  for (const std::string& warning : base.warnings())
    printWarning(warning);
  const std::vector<ControlChanges> changes = changesOf(base, sheet);
  checkEachPicture(description, arguments, plan, changes);
  const int width = arguments.width.value_or(SheetLayout::usefulWidth(sheet.gridColumns()));
  const SheetShare share = shareOf(one, task, width);
  checkExpectedSize(sheet, share.small);
  ExitCode code = ExitCode::Done;
  const std::vector<SheetPicture> pictures =
      renderSheet(description, sheet, share, changes, threads, code);
  if (code == ExitCode::Done) writeSheet(arguments, sheet, share, pictures);
  return static_cast<int>(code);
}

}  // namespace drevintool
