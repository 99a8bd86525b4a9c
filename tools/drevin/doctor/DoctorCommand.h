#pragma once

/// What renders would run with on this machine.

#include "arguments/DoctorArguments.h"

namespace drevintool {

/// Prints the version of the command, the plug-in with its version and the instruction set that it
/// chose, the host, the versions of the picture libraries, the processors that may be used with the
/// quota of the control groups, and the memory that pictures may take with the limits that it comes
/// from. Gives exit code 0, or PluginNotLoaded after printing all else, with one line on standard
/// error; the JSON has that line too.
int runDoctor(const DoctorArguments& arguments);

}  // namespace drevintool
