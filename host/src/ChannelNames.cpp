/// Names of channels; numbers are given in the order in which names are first asked for.

#include <deque>
#include <map>
#include <mutex>
#include <string>

#include "DDImage/Channel.h"

namespace DD {
namespace Image {

namespace {

struct Names {
  std::mutex mutex;
  std::deque<std::string> byNumber;  // a deque, so that names never move
  std::deque<std::string> layers;
  std::map<std::string, int> numbers;

  Names() {
    for (const char* name : {"none", "rgba.red", "rgba.green", "rgba.blue", "rgba.alpha", "depth.Z",
                             "deep.front", "deep.back"}) {
      add(name);
    }
  }

  int add(const std::string& name) {
    const int number = static_cast<int>(byNumber.size());
    const std::size_t dot = name.rfind('.');
    byNumber.push_back(name);
    layers.push_back(dot == std::string::npos ? std::string() : name.substr(0, dot));
    numbers[name] = number;
    return number;
  }
};

Names& names() {
  static Names instance;
  return instance;
}

}  // namespace

const char* getName(Channel channel) {
  Names& all = names();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto number = static_cast<std::size_t>(channel);
  return number < all.byNumber.size() ? all.byNumber[number].c_str() : all.byNumber[0].c_str();
}

const char* getLayerName(Channel channel) {
  Names& all = names();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto number = static_cast<std::size_t>(channel);
  return number < all.layers.size() ? all.layers[number].c_str() : "";
}

Channel getChannel(const char* name, bool /*sort*/) {
  if (name == nullptr || *name == '\0') return Chan_Black;
  Names& all = names();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto found = all.numbers.find(name);
  if (found != all.numbers.end()) return static_cast<Channel>(found->second);
  if (all.byNumber.size() > static_cast<std::size_t>(Chan_Last)) return Chan_Black;
  return static_cast<Channel>(all.add(name));
}

Channel findChannel(const char* name) {
  if (name == nullptr) return Chan_Black;
  Names& all = names();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto found = all.numbers.find(name);
  return found == all.numbers.end() ? Chan_Black : static_cast<Channel>(found->second);
}

}  // namespace Image
}  // namespace DD
