#pragma once

/// The frame table: every figure measured and printed as a line.

#include <string>

#include "frames/TablePlan.h"

namespace drevin::bench {

/// Measures the figures whose names contain `only` (all for "") and prints them as a Markdown table
/// on standard output. Prints what is wrong on standard error: a picture that strays from the
/// yardstick by more than TableLine::mostError, or a row of what it is compared with by more than
/// the bound. True if nothing is. Throws std::invalid_argument if there is none of that name.
bool printFrameTable(const TablePlan& plan, const std::string& only);

/// Likewise of every figure, on small pictures.
bool checkFrameTable();

}  // namespace drevin::bench
