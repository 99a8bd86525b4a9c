#pragma once

/// The command run as a process of its own.

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace drevintool::testing {

/// A limit of 1 GiB for RunOptions::addressSpace; sanitizers reserve more: none for them.
constexpr std::size_t kGibibyteOfAddresses = DREVIN_SANITIZED ? 0 : std::size_t{1} << 30;

struct RunOptions {
  std::map<std::string, std::string> environment;  ///< added to the test's own
  double timeoutSeconds = 120.0;                   ///< then it is killed
  std::size_t addressSpace = 0;                    ///< bytes; 0: no limit
  std::size_t fileSize = 0;                        ///< bytes; 0: no limit
  std::size_t openFiles = 0;                       ///< descriptors; 0: no limit
  int signal = 0;                                  ///< sent after signalAfterSeconds, if not 0
  double signalAfterSeconds = 0.0;  ///< from when it handles the signal, which takes it a moment
  double signalAfterProcessorSeconds = 0.0;  ///< and that much work of all its threads
  std::function<bool()> signalWhen;          ///< and when it holds, if it is given
  bool unprivileged = false;                 ///< as the user nobody, where the test may become that
  std::function<void()> inChild;             ///< called before it becomes the command
  std::string command;                       ///< default: the one that was built
};

struct RunResult {
  int exitCode = -1;  ///< -1 if it did not end by itself
  std::string out;
  std::string error;
  double seconds = 0.0;
  double secondsAfterSignal = 0.0;           ///< from the signal to the end, if one was sent
  double processorSecondsAfterSignal = 0.0;  ///< as below, to about 0.02 s
  double processorSeconds = 0.0;             ///< of all its threads, system calls included
  long peakKibibytes = 0;
};

RunResult runCommand(const std::vector<std::string>& arguments, const RunOptions& options = {});

/// The lines of a text that begin with `start`.
std::vector<std::string> linesStarting(const std::string& text, const std::string& start);

/// Whether standard error is one line that begins with "drevin: error: ", and nothing else but
/// warnings and progress.
bool isOneErrorLine(const std::string& error);

/// Arguments "render --quiet --input IN --output OUT" and what follows.
std::vector<std::string> renderArguments(const std::string& input, const std::string& output,
                                         const std::vector<std::string>& more = {});

/// Arguments "render --quiet --deep DEEP --output OUT" and what follows.
std::vector<std::string> deepArguments(const std::string& deep, const std::string& output,
                                       const std::vector<std::string>& more = {});

/// Whether the command can be run as a user who may not read and write everything.
bool canRunUnprivileged();

/// The path of the plug-in that was built.
std::string builtPlugin();

}  // namespace drevintool::testing
