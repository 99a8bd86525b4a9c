#pragma once

/// Commands to try on the demo scene.

#include <string>
#include <vector>

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

/// Renders of the scene in `directory` that each show one side of the node. `camera` is the value
/// of --camera, with a focal plane of 3.85 m.
std::vector<DemoSuggestion> demoSuggestions(const std::string& directory,
                                            const std::string& camera);

/// The command line for a shell, arguments quoted where they need it.
std::string shellLine(const std::vector<std::string>& arguments);

}  // namespace drevintool
