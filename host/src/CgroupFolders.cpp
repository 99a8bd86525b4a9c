#include "EmbeddedHost/CgroupFolders.h"

#include <algorithm>
#include <fstream>

namespace embedded {

namespace {

void addUpFrom(const std::string& root, std::string path, std::vector<std::string>& folders) {
  while (!path.empty() && path != "/") {
    folders.push_back(root + path);
    path.resize(std::min(path.size(), path.rfind('/')));
  }
}

}  // namespace

std::vector<std::string> cgroupFolders(const std::string& controller, const CgroupPlaces& places) {
  const std::string rootOfController = places.root + "/" + controller;
  std::vector<std::string> folders;
  std::ifstream file(places.ofProcess);
  // Lines are "number:controller,controller:path"; version 2 has no controllers.
  for (std::string line; std::getline(file, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (first == std::string::npos || second == std::string::npos) continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    const std::string path = line.substr(second + 1);
    if (controllers == ",,") addUpFrom(places.root, path, folders);
    if (controllers.find("," + controller + ",") != std::string::npos)
      addUpFrom(rootOfController, path, folders);
  }
  folders.push_back(places.root);
  folders.push_back(rootOfController);
  return folders;
}

}  // namespace embedded
