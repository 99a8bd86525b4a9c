#pragma once

/// Names from files in messages: as many and as much of each as one line can bear.

#include <cstddef>
#include <string>
#include <vector>

namespace drevintool {

/// The name, or its first 60 bytes (fewer where a character would be cut) and "..." where it is
/// longer.
std::string shortName(const std::string& name);

/// The characters of a text of valid UTF-8.
std::size_t characters(const std::string& text);

/// The name for a column of that many characters: where it is longer, its beginning and its end,
/// by which channels differ, with "..." between them. `most` is at least 8; the name is valid
/// UTF-8.
std::string columnName(const std::string& name, std::size_t most);

/// The names by commas, each as shortName gives it; of more than 20 the first 20 "and N more".
std::string nameList(const std::vector<std::string>& names);

}  // namespace drevintool
