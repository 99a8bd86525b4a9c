#pragma once

/// A line of the frame table as Markdown.

#include <optional>
#include <string>

namespace drevin::bench {

struct TableLine {
  std::string figure;
  std::string ours;
  std::string literal;  ///< row by row, plain
  std::string node;     ///< row by row, the node's own
  std::string value;    ///< a ratio or another value that the figure is about
  std::string reach;    ///< what it must reach
  std::string aim;      ///< what it should
  /// Worst of the picture, in parts of the bound.
  std::optional<double> error;
  /// What that may be: a quarter of what a picture may differ by. Not printed.
  double mostError = 0.25;
  /// Worst of what it is compared with: the row-by-row forms, or other ways; not printed.
  std::optional<double> otherError;
};

/// Both lines above the first; columns are named.
std::string tableHead();
/// An empty cell is a dash.
std::string tableText(const TableLine& line);

/// "1.23 s", "45.6 s", "123 s".
std::string secondsText(double seconds);
/// A number from 0 on in three digits: "0.0123", "1.23", "12.3", "123".
std::string numberText(double number);
/// As numberText, then a times sign: "12.3×".
std::string timesText(double ratio);
/// "5.3 %".
std::string percentText(double share);
/// "0.35 GB", of 10^9 bytes.
std::string gigabytesText(double bytes);

}  // namespace drevin::bench
