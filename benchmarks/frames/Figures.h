#pragma once

/// The figures of the frame table.

#include <functional>
#include <string>
#include <vector>

#include "frames/TableLine.h"
#include "frames/TablePlan.h"

namespace drevin::bench {

/// A line by a name that it can be asked for by.
struct Figure {
  std::string name;
  std::function<TableLine()> measure;
};

/// Whole frames against the row-by-row forms: flat and deep.
std::vector<Figure> speedFigures(const TablePlan& plan);
/// How the time grows with the blur.
std::vector<Figure> growthFigures(const TablePlan& plan);
/// What apertures and effects add to the time.
std::vector<Figure> kernelFigures(const TablePlan& plan);
/// Peak memory; each measurement is a process of its own.
std::vector<Figure> memoryFigures(const TablePlan& plan);
/// A part of a frame, the number of threads, and what is made before the picture.
std::vector<Figure> shareFigures(const TablePlan& plan);
/// Reading and writing files, as the command does it.
std::vector<Figure> exrFigures(const TablePlan& plan);
/// What the cost model's choice costs in parts of the picture, next to the quickest of it and
/// transforming nothing or everything; on one thread.
std::vector<Figure> choiceFigures(const TablePlan& plan);

}  // namespace drevin::bench
