#include "DemoSuggestions.h"

#include <filesystem>

namespace drevintool {
namespace {

using Words = std::vector<std::string>;

std::string inside(const std::string& directory, const char* name) {
  return (std::filesystem::path(directory) / name).string();
}

Words operator+(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// Depths divide at 3.4 m and 4.6 m: before the figure, the figure whole, behind it.
Words slices() {
  return {"--set", "correctiveSlices=3",           "--set", "overrideNearAndFarForSlices=1",
          "--set", "depthSlicesNearAndFar=2.2,5.8"};
}

Words lens(const std::string& camera) {
  return Words{"--camera", camera, "--set", "realWorldLens=1", "--set", "worldScale=m"} + slices();
}

Words artistic() {
  return Words{"--set", "focalPlane=3.85", "--set", "focusRegionSize=12",
               "--set", "multiplier=36",   "--set", "focusRegionFalloff=Quadratic"} +
         slices();
}

}  // namespace

std::vector<DemoSuggestion> demoSuggestions(const std::string& directory,
                                            const std::string& camera) {
  const Words start{"render", "--input", inside(directory, kDemoStreet)};
  const Words mattes{"--mattes", inside(directory, kDemoMattes)};
  const auto to = [&](const char* name) { return Words{"--output", inside(directory, name)}; };
  return {
      {"The scene's own camera, an 85 mm lens at f/1.2 focused on the umbrella",
       start + lens(camera) + to("lens.png")},
      {"By eye: a blur of 36 pixels from 6 m behind the focal plane on",
       start + artistic() + to("artistic.png")},
      {"An aperture of five blades that brightens toward its rim",
       start + lens(camera) +
           Words{"--set", "kernelType=Aperture Blades", "--set", "kNumSides=5", "--set",
                 "kCurvature=0", "--set", "kSphAbb=0.9"} +
           to("blades.png")},
      {"A coloured picture of an aperture, cut as a heart",
       start + Words{"--kernel", inside(directory, kDemoAperture)} + lens(camera) +
           Words{"--set", "kernelType=Input"} + to("hearts.png")},
      {"Colours that part and lights that bloom toward the corners",
       start + mattes + lens(camera) +
           Words{"--set", "kChrAbb=6", "--set", "chromicAberrationMatteChannel=matte.chromatic",
                 "--set", "bloom=1", "--set", "bloomMatteChannel=matte.bloom"} +
           to("artifacts.png")},
      {"The neon sign held in focus by a matte",
       start + mattes + lens(camera) + Words{"--set", "defocusMatteChannel=matte.defocus"} +
           to("sign.png")},
      {"Where the blur is: red in focus, green before, blue behind",
       start + lens(camera) + Words{"--set", "outputType=Focal Distance Visualization"} +
           to("focus.png")},
  };
}

std::string shellLine(const std::vector<std::string>& arguments) {
  const std::string plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.,:/@%";
  std::string line = "drevin";
  for (const std::string& word : arguments) {
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
      line += " " + word;
      continue;
    }
    line += " '";
    for (const char c : word)
      line += c == '\'' ? std::string("'\\''") : std::string(1, c);
    line += "'";
  }
  return line;
}

}  // namespace drevintool
