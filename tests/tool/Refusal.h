#pragma once

/// The command that refuses to make a picture, and loses nothing by it.

#include <string>
#include <vector>

#include "CommandRun.h"

namespace drevintool::testing {

/// Runs the command twice, with nothing at its output's place and, if its folder is there, with a
/// file. Each time it must end with the code and exactly one line on standard error, which holds
/// all the pieces; the place must be as it was before, and the output's folder too. `arguments`
/// must have --output.
void expectRefused(const std::vector<std::string>& arguments, int code,
                   const std::vector<std::string>& pieces, const RunOptions& options = {});

}  // namespace drevintool::testing
