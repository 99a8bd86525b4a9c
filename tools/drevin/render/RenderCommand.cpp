#include "render/RenderCommand.h"

#include "controls/PluginSearch.h"
#include "controls/PluginSimd.h"
#include "render/FrameJob.h"
#include "render/RenderSetup.h"
#include "sequence/SequencePlan.h"
#include "sequence/SequenceRender.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/OneLine.h"
#include "terminal/Progress.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

int renderPicture(const FrameShare& share, const SequencePlan& plan) {
  const FrameTask& task = plan.tasks().front();
  const RenderArguments arguments = plan.argumentsOf(task);
  ProgressDisplay display(arguments.quiet);
  const auto show = [&](const embedded::Progress& progress) { display.show(progress); };
  FrameJob job(share, task, arguments, show);
  job.read();
  const FrameOutcome outcome = job.finish();
  if (!outcome.failed()) display.finish();
  if (outcome.skipped && !arguments.quiet) {
    printNote(oneLine("1 of 1 pictures was there already: " + arguments.output));
  }
  for (const std::string& error : outcome.errors)
    printError(error);
  return static_cast<int>(outcome.code);
}

}  // namespace

int runRender(const RenderArguments& arguments) {
  const SequencePlan plan(arguments);
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  warnOfSimd(description);
  const unsigned threads = setUpProcess(arguments);
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
