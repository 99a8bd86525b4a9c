#include "demo/DemoCommand.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "demo/DemoAperture.h"
#include "demo/DemoDeepFile.h"
#include "demo/DemoDeepScene.h"
#include "demo/DemoFiles.h"
#include "demo/DemoMattes.h"
#include "demo/DemoSuggestions.h"
#include "picture/AtomicFile.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

namespace fs = std::filesystem;

std::string inside(const std::string& directory, const char* name) {
  return (fs::path(directory) / name).string();
}

void makeFolder(const std::string& directory) {
  std::error_code error;
  fs::create_directories(directory, error);
  if (error || !fs::is_directory(directory)) {
    const std::string reason = error ? error.message() : "is not a folder";
    throw ToolError(ExitCode::OutputNotWritten, oneLine(directory + ": " + reason));
  }
  for (const char* name : {kDemoStreet, kDemoDeep, kDemoMattes, kDemoAperture, kDemoCamera}) {
    AtomicFile::checkPlace(inside(directory, name));
  }
}

void writeFiles(const std::string& directory, const DemoCamera& camera, int width) {
  const DemoPictures pictures = renderDemoPictures(camera, width);
  writeDemoPicture(pictures.flat, inside(directory, kDemoStreet));
  writeDemoDeep(pictures.deep, inside(directory, kDemoDeep));
  writeDemoPicture(makeDemoMattes(pictures.flat, camera), inside(directory, kDemoMattes));
  writeDemoPicture(makeDemoAperture(), inside(directory, kDemoAperture));
  writeDemoText(cameraText(camera), inside(directory, kDemoCamera));
}

void printFiles(const std::string& directory, const DemoCamera& camera) {
  std::printf("%s\n", oneLine(inside(directory, kDemoStreet)).c_str());
  std::puts("  a night street: R, G, B, A, and Z in metres, infinite for the sky");
  std::printf("%s\n", oneLine(inside(directory, kDemoDeep)).c_str());
  std::puts("  the same street as deep samples, with wet glass and steam that the flat one lacks");
  std::printf("%s\n", oneLine(inside(directory, kDemoMattes)).c_str());
  std::puts("  matte.defocus, matte.bloom, matte.chromatic");
  std::printf("%s\n", oneLine(inside(directory, kDemoAperture)).c_str());
  std::puts("  an aperture, different per colour");
  std::printf("%s\n", oneLine(inside(directory, kDemoCamera)).c_str());
  std::printf("  %s\n", cameraText(camera).c_str());
}

}  // namespace

int runDemo(const std::string& directory, int width) {
  const DemoCamera camera;
  makeFolder(directory);
  writeFiles(directory, camera, width);
  printFiles(directory, camera);
  std::puts("\nTry:");
  for (const DemoSuggestion& suggestion : demoSuggestions(directory, camera)) {
    std::printf("\n# %s\n%s\n", suggestion.purpose.c_str(),
                shellLine(suggestion.arguments).c_str());
  }
  return static_cast<int>(ExitCode::Done);
}

}  // namespace drevintool
