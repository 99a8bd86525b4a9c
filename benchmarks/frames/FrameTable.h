#pragma once

/// The frame table: every figure measured and printed as a line.

#include <string>

#include "frames/TablePlan.h"

namespace drevin::bench {

/// Measures the figures whose names contain `only` (all for "") and prints them as a Markdown table
/// on standard output; on standard error those whose pictures do not agree. True if all agree.
/// Throws std::invalid_argument if there is none of that name.
bool printFrameTable(const TablePlan& plan, const std::string& only);

/// Measures every figure on small pictures and prints what is wrong on standard error: a picture,
/// or a row of what it is compared with, that strays from the yardstick by more than the bound.
/// True if nothing is.
bool checkFrameTable();

}  // namespace drevin::bench
