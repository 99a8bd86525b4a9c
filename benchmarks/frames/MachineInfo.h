#pragma once

#include <string>

namespace drevin::bench {

/// Processor, threads in use, instruction set in use, compiler and load of the machine, one line.
std::string machineInfo();

}  // namespace drevin::bench
