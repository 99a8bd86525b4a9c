#include "Classes.h"

#include <algorithm>
#include <cstring>

#include "EmbeddedHost/Plugin.h"

namespace embedded {

Classes& Classes::instance() {
  // Never destroyed: libraries may unregister after the end of main.
  static auto* classes = new Classes;
  return *classes;
}

void Classes::add(DD::Image::Description* description) {
  const std::lock_guard<std::mutex> lock(mutex_);
  descriptions_.push_back(description);
}

void Classes::remove(DD::Image::Description* description) {
  const std::lock_guard<std::mutex> lock(mutex_);
  descriptions_.erase(std::remove(descriptions_.begin(), descriptions_.end(), description),
                      descriptions_.end());
}

std::vector<DD::Image::Description*> Classes::all() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return descriptions_;
}

DD::Image::Description* Classes::find(const char* name) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found =
      std::find_if(descriptions_.begin(), descriptions_.end(),
                   [&](const auto* known) { return std::strcmp(known->name, name) == 0; });
  return found == descriptions_.end() ? nullptr : *found;
}

const DD::Image::Op::Description* findClass(const std::string& className) {
  return static_cast<const DD::Image::Op::Description*>(
      Classes::instance().find(className.c_str()));
}

}  // namespace embedded

namespace DD {
namespace Image {

Description::Description(const char* className, const char* buildString)
    : name(className), compiled(buildString), plugin(nullptr) {
  embedded::Classes::instance().add(this);
}

Description::~Description() {
  embedded::Classes::instance().remove(this);
}

}  // namespace Image
}  // namespace DD
