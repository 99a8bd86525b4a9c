#include "render/RenderCommand.h"

#include <OpenEXR/ImfThreading.h>

#include "EmbeddedHost/DeepOrder.h"
#include "controls/CameraOption.h"
#include "controls/PluginSearch.h"
#include "picture/MemoryBudget.h"
#include "render/FrameJob.h"
#include "sequence/SequencePlan.h"
#include "sequence/SequenceRender.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/Progress.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

// Threads of the picture library. It is not built for the thread sanitizer, which would take its
// hand-overs between threads for races.
int pictureThreads(unsigned threads) {
#ifdef __SANITIZE_THREAD__
  static_cast<void>(threads);
  return 0;
#else
  return threads > 1 ? static_cast<int>(threads) : 0;
#endif
}

void chooseThreads(unsigned threads) {
  embedded::setThreadCount(threads);
  Imf::setGlobalThreadCount(pictureThreads(threads));
}

// A camera that is there before the first picture, the same for all of them.
void checkCamera(const RenderArguments& arguments, const RenderArguments& first, const Node& node,
                 const FrameTask& task) {
  if (arguments.camera.empty() || first.camera != arguments.camera) return;
  const CameraOption camera(arguments.camera);
  if (!camera.isHeader()) camera.at(task.frame, node, nullptr);
}

// Faults of the command line show on a node of their own, before anything is read.
void checkControls(const RenderArguments& arguments, const SequencePlan& plan,
                   const FrameShare& share) {
  Node node(share.description);
  const FrameTask& first = plan.tasks().front();
  share.changes.applyValues(node, first.frame);
  checkCamera(arguments, plan.argumentsOf(first), node, first);
}

int renderPicture(const FrameShare& share, const SequencePlan& plan) {
  const FrameTask& task = plan.tasks().front();
  const RenderArguments arguments = plan.argumentsOf(task);
  ProgressDisplay display(arguments.quiet);
  const auto show = [&](const embedded::Progress& progress) { display.show(progress); };
  FrameJob job(share, task, arguments, show);
  job.read();
  const FrameOutcome outcome = job.finish();
  if (!outcome.failed()) display.finish();
  for (const std::string& error : outcome.errors)
    printError(error);
  return static_cast<int>(outcome.code);
}

}  // namespace

int runRender(const RenderArguments& arguments) {
  const SequencePlan plan(arguments);
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  const unsigned threads =
      arguments.threads == 0 ? embedded::usableProcessors() : arguments.threads;
  chooseThreads(threads);
  limitMemory(arguments.maxMemory);
  embedded::setDeepOrder(arguments.deepOrder);
  const Node fresh(description);
  const ControlChanges changes(arguments, fresh);
  for (const std::string& warning : changes.warnings())
    printWarning(warning);
  const FrameShare share{description, changes, !arguments.report.empty()};
  checkControls(arguments, plan, share);
  plan.checkOutputs();
  if (!plan.isSequence()) return renderPicture(share, plan);
  return renderSequence(share, plan, arguments, threads);
}

}  // namespace drevintool
