#pragma once

/// What renders would run with on this machine.

#include "arguments/DoctorArguments.h"

namespace drevintool {

/// Prints the version of the command, the plug-in with its build and the instruction set that it
/// chose, the versions of the picture libraries, the processors that may be used, and the memory
/// that pictures may take with the limits that it comes from. Gives exit code 0, or
/// PluginNotLoaded after printing all else, with one line on standard error.
int runDoctor(const DoctorArguments& arguments);

}  // namespace drevintool
