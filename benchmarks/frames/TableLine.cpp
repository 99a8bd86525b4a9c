#include "frames/TableLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace drevin::bench {

namespace {

std::string cell(const std::string& text) {
  return text.empty() ? "–" : text;
}

}  // namespace

std::string tableHead() {
  return "| figure | ours | row by row | row by row, optimised | ratio or value | reach | aim | "
         "error |\n|---|---|---|---|---|---|---|---|";
}

std::string tableText(const TableLine& line) {
  const std::string error = line.error ? fmt::format("{:.3f}", *line.error) : "";
  return fmt::format("| {} | {} | {} | {} | {} | {} | {} | {} |", cell(line.figure),
                     cell(line.ours), cell(line.literal), cell(line.node), cell(line.value),
                     cell(line.reach), cell(line.aim), cell(error));
}

std::string numberText(double number) {
  if (!(number > 0.0)) return fmt::format("{:g}", number);
  // Decimals are those of the rounded number, which may have a digit more before the point.
  const double rounded = std::stod(fmt::format("{:.2e}", number));
  const int decade = static_cast<int>(std::floor(std::log10(rounded)));
  return fmt::format("{:.{}f}", rounded, std::clamp(2 - decade, 0, 9));
}

std::string secondsText(double seconds) {
  return numberText(seconds) + " s";
}

std::string timesText(double ratio) {
  return numberText(ratio) + "×";
}

std::string percentText(double share) {
  return fmt::format("{:.1f} %", 100.0 * share);
}

std::string gigabytesText(double bytes) {
  return fmt::format("{:.2f} GB", bytes * 1e-9);
}

}  // namespace drevin::bench
