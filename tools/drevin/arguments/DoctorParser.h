#pragma once

/// The options of the subcommand `doctor`.

#include "arguments/DoctorArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

class DoctorParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit DoctorParser(CLI::App& app);
  DoctorParser(const DoctorParser&) = delete;
  DoctorParser& operator=(const DoctorParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do.
  DoctorArguments checked() const;

 private:
  CLI::App& app_;
  DoctorArguments arguments_;
};

}  // namespace drevintool
