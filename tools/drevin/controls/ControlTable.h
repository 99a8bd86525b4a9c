#pragma once

/// The controls as a table for people.

#include <string>

#include "EmbeddedHost/Node.h"

namespace drevintool {

/// Lines of at most 100 columns: a heading for each tab, then a line for each control with its
/// name, value, range and state ("greyed" if the artist cannot change it, the default where the
/// value differs), with the labels of a choice below it. `fresh` is a node as made.
std::string controlTable(const Node& node, const Node& fresh);

}  // namespace drevintool
