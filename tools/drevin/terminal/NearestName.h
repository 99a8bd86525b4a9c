#pragma once

/// The name that was probably meant, for messages about a name that does not exist.

#include <string>
#include <vector>

namespace drevintool {

/// The entry of `names` with the fewest edits (insert, delete, replace, swap of neighbours; letter
/// case counts half) from `name`; the first of equals. Empty if `names` is empty or nothing comes
/// near, that is if more than half of the longer name would have to change.
std::string nearestName(const std::string& name, const std::vector<std::string>& names);

/// "; did you mean NEAREST?", or nothing where no name comes near.
std::string nearestHint(const std::string& name, const std::vector<std::string>& names);

/// "; did you mean NEAREST? It has LIST", or "; it has LIST".
std::string nearestHintAndList(const std::string& name, const std::vector<std::string>& names,
                               const std::string& list);

}  // namespace drevintool
