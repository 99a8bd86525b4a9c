#pragma once

/// Commands to try on the demo scene.

#include <string>
#include <vector>

#include "demo/DemoCamera.h"

namespace drevintool {

/// The files of a demo folder.
constexpr const char* kDemoStreet = "street.exr";
constexpr const char* kDemoDeep = "street.deep.exr";
constexpr const char* kDemoMattes = "mattes.exr";
constexpr const char* kDemoAperture = "kernel.exr";
constexpr const char* kDemoCamera = "camera.txt";

struct DemoSuggestion {
  std::string purpose;                 ///< what the picture shows, for people
  std::vector<std::string> arguments;  ///< of the command, "render" first
};

/// Renders of the scene in `directory`, as `camera` sees it, that each show one side of the node.
std::vector<DemoSuggestion> demoSuggestions(const std::string& directory, const DemoCamera& camera);

/// The command line for a shell, arguments quoted where they need it.
std::string shellLine(const std::vector<std::string>& arguments);

}  // namespace drevintool
