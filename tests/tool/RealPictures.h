#pragma once

/// The folder of real pictures that some tests read.

#include <string>
#include <vector>

namespace drevintool::testing {

/// The folder: the environment variable DREVIN_TEST_DATA, else the one that was configured. Empty
/// if it is not there.
std::string pictureFolder();

/// The regular files of a folder in it, in alphabetical order.
std::vector<std::string> filesIn(const std::string& folder);

}  // namespace drevintool::testing

/// Skips the test, with a line that says why, where the folder is not found.
#define SKIP_WITHOUT_PICTURES()                                                    \
  if (::drevintool::testing::pictureFolder().empty()) {                            \
    GTEST_SKIP() << "no real pictures here: set DREVIN_TEST_DATA to their folder"; \
  }                                                                                \
  static_assert(true)
