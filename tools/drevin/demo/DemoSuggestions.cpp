#include "demo/DemoSuggestions.h"

#include <filesystem>

#include "demo/DemoShelter.h"
#include "sequence/FramePattern.h"

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

// As options of the command take it.
std::string named(const std::string& directory, const char* name) {
  return patternOfFile(inside(directory, name));
}

// Depths divide a third and two thirds of the way between the two.
Words slices(const std::string& nearAndFar) {
  return {"--set", "correctiveSlices=3",
          "--set", "overrideNearAndFarForSlices=1",
          "--set", "depthSlicesNearAndFar=" + nearAndFar};
}

// At 3.4 m and 4.6 m: before the figure, the figure whole, behind it.
Words figureSlices() {
  return slices("2.2,5.8");
}

Words lens(const DemoCamera& camera) {
  return {"--camera", cameraText(camera), "--set", "realWorldLens=1", "--set", "worldScale=m"};
}

Words focused(DemoCamera camera, double focalPlane) {
  camera.focalPlane = focalPlane;
  return lens(camera);
}

Words artistic() {
  return Words{"--set", "focalPlane=3.85", "--set", "focusRegionSize=12",
               "--set", "multiplier=36",   "--set", "focusRegionFalloff=Quadratic"} +
         figureSlices();
}

std::vector<DemoSuggestion> flatSuggestions(const std::string& directory,
                                            const DemoCamera& camera) {
  const Words start{"render", "--input", named(directory, kDemoStreet)};
  const Words mattes{"--mattes", named(directory, kDemoMattes)};
  const Words figure = lens(camera) + figureSlices();
  const auto to = [&](const char* name) { return Words{"--output", named(directory, name)}; };
  return {
      {"The scene's own camera, an 85 mm lens at f/1.2 focused on the umbrella",
       start + figure + to("lens.png")},
      {"By eye: a blur of 36 pixels from 6 m behind the focal plane on",
       start + artistic() + to("artistic.png")},
      {"An aperture of five blades that brightens toward its rim",
       start + figure +
           Words{"--set", "kernelType=Aperture Blades", "--set", "kNumSides=5", "--set",
                 "kCurvature=0", "--set", "kSphAbb=0.9"} +
           to("blades.png")},
      {"A coloured picture of an aperture, cut as a heart",
       start + Words{"--kernel", named(directory, kDemoAperture)} + figure +
           Words{"--set", "kernelType=Input"} + to("hearts.png")},
      {"Colours that part and lights that bloom toward the corners",
       start + mattes + figure +
           Words{"--set", "kChrAbb=6", "--set", "chromicAberrationMatteChannel=matte.chromatic",
                 "--set", "bloom=1", "--set", "bloomMatteChannel=matte.bloom"} +
           to("artifacts.png")},
      {"The neon sign held in focus by a matte",
       start + mattes + figure + Words{"--set", "defocusMatteChannel=matte.defocus"} +
           to("sign.png")},
      {"Where the blur is: red in focus, green before, blue behind",
       start + figure + Words{"--set", "outputType=Focal Distance Visualization"} +
           to("focus.png")},
  };
}

// Samples from the far end, so that steam is cut where it should be.
Words deepStart(const std::string& directory) {
  return {"render", "--deep", named(directory, kDemoDeep), "--deep-order", "far-first"};
}

std::vector<DemoSuggestion> deepSuggestions(const std::string& directory,
                                            const DemoCamera& camera) {
  const Words start = deepStart(directory);
  const auto to = [&](const char* name) { return Words{"--output", named(directory, name)}; };
  return {
      {"The deep street: what is behind an edge, a pane of glass or steam keeps its own blur",
       start + lens(camera) + figureSlices() + to("deep-lens.png")},
      {"Focus pulled to the rain on the glass, the street still soft behind it",
       start + focused(camera, kDemoPaneDepth) + slices("4.4,6.8") + to("deep-glass.png")},
      {"Focus pulled to the steam over the road",
       start + focused(camera, 15.5) + slices("5,26") + to("deep-steam.png")},
  };
}

}  // namespace

std::vector<DemoSuggestion> demoSuggestions(const std::string& directory,
                                            const DemoCamera& camera) {
  std::vector<DemoSuggestion> all = flatSuggestions(directory, camera);
  const std::vector<DemoSuggestion> deep = deepSuggestions(directory, camera);
  all.insert(all.end(), deep.begin(), deep.end());
  return all;
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
