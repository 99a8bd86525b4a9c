#include "frames/FrameTable.h"

#include <fmt/format.h>

#include <cstdio>
#include <stdexcept>
#include <vector>

#include "frames/Figures.h"
#include "frames/MachineInfo.h"

namespace drevin::bench {

namespace {

std::vector<Figure> allFigures(const TablePlan& plan) {
  std::vector<Figure> all;
  for (const auto& part : {speedFigures, growthFigures, kernelFigures, memoryFigures, shareFigures,
                           exrFigures, choiceFigures}) {
    for (Figure& figure : part(plan))
      all.push_back(std::move(figure));
  }
  return all;
}

void printLine(const std::string& text) {
  fmt::print("{}\n", text);
  std::fflush(stdout);
}

bool checkLine(const TableLine& line) {
  bool good = true;
  // A NaN is within no bound.
  if (line.error && !(*line.error <= line.mostError)) {
    fmt::print(stderr, "{}: the picture strays by {:.3g} of the bound; at most {} is right\n",
               line.figure, *line.error, line.mostError);
    good = false;
  }
  if (line.otherError && !(*line.otherError <= 1.0)) {
    fmt::print(stderr, "{}: a row of what it is compared with strays by {:.3g} of the bound\n",
               line.figure, *line.otherError);
    good = false;
  }
  return good;
}

/// Whether its pictures agree.
bool printFigure(const Figure& figure) {
  const TableLine line = figure.measure();
  printLine(tableText(line));
  return checkLine(line);
}

}  // namespace

bool printFrameTable(const TablePlan& plan, const std::string& only) {
  bool any = false;
  bool good = true;
  for (const Figure& figure : allFigures(plan)) {
    if (figure.name.find(only) == std::string::npos) continue;
    if (!any) printLine(machineInfo() + "\n\n" + tableHead());
    any = true;
    good = printFigure(figure) && good;
  }
  if (!any) {
    std::string names;
    for (const Figure& figure : allFigures(plan))
      names += "\n  " + figure.name;
    throw std::invalid_argument(only + ": no such figure; there are" + names);
  }
  return good;
}

bool checkFrameTable() {
  bool good = true;
  printLine(machineInfo() + "\n\n" + tableHead());
  for (const Figure& figure : allFigures(quickPlan()))
    good = printFigure(figure) && good;
  return good;
}

}  // namespace drevin::bench
