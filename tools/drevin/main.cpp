#include <cstdio>
#include <exception>
#include <new>
#include <system_error>
#include <variant>

#include "arguments/Arguments.h"
#include "completion/Completion.h"
#include "controls/ControlsCommand.h"
#include "controls/ScriptCommand.h"
#include "demo/DemoCommand.h"
#include "doctor/DoctorCommand.h"
#include "inspect/InspectCommand.h"
#include "render/RenderCommand.h"
#include "sheet/SheetCommand.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/Signals.h"
#include "terminal/StandardDescriptors.h"
#include "terminal/StandardOutput.h"

namespace drevintool {
namespace {

int run(const TextRequest& request) {
  std::fputs(request.text.c_str(), stdout);
  return static_cast<int>(ExitCode::Done);
}
int run(const RenderArguments& arguments) {
  return runRender(arguments);
}
int run(const SheetArguments& arguments) {
  return runSheet(arguments);
}
int run(const ControlsArguments& arguments) {
  return runControls(arguments);
}
int run(const ScriptArguments& arguments) {
  return runScript(arguments);
}
int run(const DemoArguments& arguments) {
  return runDemo(arguments);
}

int run(const InspectArguments& arguments) {
  return runInspect(arguments);
}

int run(const DoctorArguments& arguments) {
  return runDoctor(arguments);
}

int runCommand(int count, const char* const* texts) {
  try {
    catchSignals();
    const int code = std::visit([](const auto& arguments) { return run(arguments); },
                                parseArguments(count, texts));
    throwIfInterrupted();
    finishStandardOutput();
    return code;
  } catch (const ToolError& error) {
    printError(error.what());
    return static_cast<int>(error.code());
  } catch (const std::bad_alloc&) {
    printError("not enough memory");
  } catch (const std::system_error& error) {
    const bool threads = error.code() == std::errc::resource_unavailable_try_again;
    printError(threads ? "not enough memory or processes for its threads; try --threads 1"
                       : error.what());
  } catch (const std::exception& error) {
    printError(error.what());
  }
  return static_cast<int>(ExitCode::RenderFailed);
}

}  // namespace
}  // namespace drevintool

int main(int count, char** texts) {
  drevintool::occupyStandardDescriptors();
  if (drevintool::isCompletion(count, texts)) return drevintool::runCompletion(count, texts);
  return drevintool::runCommand(count, texts);
}
