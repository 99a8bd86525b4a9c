#include "demo/DemoCommand.h"

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <vector>

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
using Json = nlohmann::ordered_json;

std::string inside(const std::string& directory, const char* name) {
  return (fs::path(directory) / name).string();
}

// The folder of the demo. What was made for it goes again if nothing came into it.
class DemoFolder {
 public:
  explicit DemoFolder(const std::string& directory) {
    std::error_code error;
    for (fs::path path = fs::absolute(directory, error).lexically_normal();
         !error && path.has_relative_path() && !fs::exists(path, error); path = path.parent_path())
      made_.push_back(path);
    fs::create_directories(directory, error);
    if (error || !fs::is_directory(directory)) {
      const std::string reason = error ? error.message() : "is not a folder";
      removeEmpty();
      throw ToolError(ExitCode::OutputNotWritten, oneLine(directory + ": " + reason));
    }
  }
  ~DemoFolder() { removeEmpty(); }
  DemoFolder(const DemoFolder&) = delete;
  DemoFolder& operator=(const DemoFolder&) = delete;

 private:
  // The innermost first; a folder that holds something stays, and all around it.
  void removeEmpty() const noexcept {
    std::error_code error;
    for (const fs::path& path : made_)
      fs::remove(path, error);
  }

  std::vector<fs::path> made_;
};

void checkPlaces(const std::string& directory) {
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

struct DemoFile {
  std::string path;
  std::string content;
};

std::vector<DemoFile> demoFiles(const std::string& directory, const DemoCamera& camera) {
  return {{inside(directory, kDemoStreet),
           "a night street: R, G, B, A, and Z in metres, infinite for the sky"},
          {inside(directory, kDemoDeep),
           "the same street as deep samples, with wet glass and steam that the flat one lacks"},
          {inside(directory, kDemoMattes), "matte.defocus, matte.bloom, matte.chromatic"},
          {inside(directory, kDemoAperture), "an aperture, different per colour"},
          {inside(directory, kDemoCamera), cameraText(camera)}};
}

void printText(const std::vector<DemoFile>& files, const std::vector<DemoSuggestion>& suggestions) {
  for (const DemoFile& file : files)
    std::printf("%s\n  %s\n", oneLine(file.path).c_str(), file.content.c_str());
  std::puts("\nTry:");
  for (const DemoSuggestion& suggestion : suggestions) {
    std::printf("\n# %s\n%s\n", suggestion.purpose.c_str(),
                shellLine(suggestion.arguments).c_str());
  }
}

void printJson(const std::vector<DemoFile>& files, const std::vector<DemoSuggestion>& suggestions) {
  Json json;
  for (const DemoFile& file : files)
    json["files"].push_back({{"file", file.path}, {"content", file.content}});
  for (const DemoSuggestion& suggestion : suggestions) {
    json["commands"].push_back(
        {{"purpose", suggestion.purpose}, {"arguments", suggestion.arguments}});
  }
  std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

}  // namespace

int runDemo(const DemoArguments& arguments, int width) {
  const DemoCamera camera;
  const DemoFolder folder(arguments.directory);
  checkPlaces(arguments.directory);
  writeFiles(arguments.directory, camera, width);
  const auto print = arguments.json ? printJson : printText;
  print(demoFiles(arguments.directory, camera), demoSuggestions(arguments.directory, camera));
  return static_cast<int>(ExitCode::Done);
}

}  // namespace drevintool
