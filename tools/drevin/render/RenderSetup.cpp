#include "render/RenderSetup.h"

#include <OpenEXR/ImfThreading.h>

#include "EmbeddedHost/DeepOrder.h"
#include "controls/CameraOption.h"
#include "picture/MemoryBudget.h"
#include "render/LittleMemory.h"

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

// A camera that is there before the first picture, the same for all of them.
void checkCamera(const RenderArguments& arguments, const RenderArguments& first, const Node& node,
                 const FrameTask& task) {
  if (arguments.camera.empty() || first.camera != arguments.camera) return;
  const CameraOption camera(arguments.camera);
  if (!camera.isHeader()) camera.at(task.frame, node, nullptr);
}

}  // namespace

void chooseThreads(unsigned threads) {
  embedded::setThreadCount(threads);
  Imf::setGlobalThreadCount(pictureThreads(threads));
}

unsigned setUpProcess(const RenderArguments& arguments) {
  prepareForLittleMemory();
  const unsigned threads =
      arguments.threads == 0 ? embedded::usableProcessors() : arguments.threads;
  chooseThreads(threads);
  limitMemory(arguments.maxMemory);
  embedded::setDeepOrder(arguments.deepOrder);
  return threads;
}

void checkControls(const RenderArguments& arguments, const SequencePlan& plan,
                   const FrameShare& share) {
  Node node(share.description);
  const FrameTask& first = plan.tasks().front();
  share.changes.applyValues(node, first.frame);
  checkCamera(arguments, plan.argumentsOf(first), node, first);
}

}  // namespace drevintool
