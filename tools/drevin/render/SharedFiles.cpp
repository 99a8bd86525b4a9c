#include "render/SharedFiles.h"

#include "picture/ExrReader.h"

namespace drevintool {

Picture SharedFiles::picture(const std::string& file) {
  if (!has(file)) return readExr(file);
  const std::lock_guard<std::mutex> lock(mutex_);
  auto known = pictures_.find(file);
  if (known == pictures_.end()) known = pictures_.emplace(file, readExr(file)).first;
  return known->second;
}

CameraOption SharedFiles::camera(const std::string& text) {
  if (!has(text)) return CameraOption(text);
  const std::lock_guard<std::mutex> lock(mutex_);
  return cameras_.try_emplace(text, text).first->second;
}

bool SharedFiles::isNews(const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return said_.insert(text).second;
}

}  // namespace drevintool
