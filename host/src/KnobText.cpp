/// Values of controls as texts.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>

#include "DDImage/Knob.h"

namespace DD {
namespace Image {

namespace {

using Words = std::vector<std::string>;

/// The words of a list: separated by blanks or commas, in braces or not.
Words wordsOf(std::string text) {
  const auto separates = [](char c) { return c == ',' || c == '\t' || c == '{' || c == '}'; };
  std::replace_if(text.begin(), text.end(), separates, ' ');
  std::istringstream stream(text);
  Words words;
  for (std::string word; stream >> word;)
    words.push_back(word);
  return words;
}

std::optional<double> numberOf(const std::string& text) {
  const char* first = text.data();
  const char* last = first + text.size();
  // A plus sign is understood, but not two signs.
  if (last - first > 1 && *first == '+' && first[1] != '-') ++first;
  double value = 0.0;
  const auto [end, failure] = std::from_chars(first, last, value);
  if (failure != std::errc() || end != last || !std::isfinite(value)) return std::nullopt;
  return value;
}

/// The shortest text that reads back as the same number.
std::string textOfNumber(double value) {
  char buffer[64];
  // Controls mostly fill floats: their digits are enough where they give the number back.
  const auto single = static_cast<float>(value);
  const bool exact = static_cast<double>(single) == value;
  const auto [end, failure] = exact ? std::to_chars(buffer, buffer + sizeof(buffer), single)
                                    : std::to_chars(buffer, buffer + sizeof(buffer), value);
  return failure == std::errc() ? std::string(buffer, end) : std::string();
}

/// A channel by its name or its short name; Chan_Black for "none"; nothing if unknown.
std::optional<Channel> channelOf(const std::string& name) {
  static const std::pair<const char*, Channel> shortNames[] = {
      {"none", Chan_Black}, {"R", Chan_Red},   {"G", Chan_Green},
      {"B", Chan_Blue},     {"A", Chan_Alpha}, {"Z", Chan_Z}};
  for (const auto& [shortName, channel] : shortNames) {
    if (name == shortName) return channel;
  }
  const Channel found = findChannel(name.c_str());
  if (found == Chan_Black) return std::nullopt;
  return found;
}

/// All channels of a layer; "rgb" and "alpha" are layers over those of rgba.
ChannelSet layerOf(const std::string& name) {
  if (name == "all") return Mask_All;
  if (name == "rgb") return Mask_RGB;
  if (name == "alpha") return Mask_Alpha;
  ChannelSet layer;
  for (int z = Chan_Red; z <= Chan_Last; ++z) {
    const auto channel = static_cast<Channel>(z);
    if (name == getLayerName(channel)) layer += channel;
  }
  return layer;
}

std::string textOfMask(const ChannelSet& mask) {
  if (mask.all()) return "all";
  if (mask.empty()) return "none";
  if (mask == ChannelSet(Mask_RGBA)) return "rgba";
  if (mask == ChannelSet(Mask_RGB)) return "rgb";
  std::string text;
  for (const Channel z : mask)
    text += (text.empty() ? "" : ",") + std::string(getName(z));
  return text;
}

}  // namespace

bool Knob::set_text(const char* text) {
  if (text == nullptr) return false;
  switch (type_) {
    case Type::Integer:
    case Type::Real:
      return setNumbers(wordsOf(text));
    case Type::Boolean:
      return setBoolean(text);
    case Type::Choice:
      return setChoice(text);
    case Type::Channels:
      return setChannels(text);
    case Type::Mask:
      return setMask(text);
    case Type::Decoration:
      break;
  }
  return false;
}

bool Knob::setNumbers(const Words& words) {
  if (words.size() != 1 && words.size() != values_.size()) return false;
  std::vector<double> numbers;
  for (const std::string& word : words) {
    const std::optional<double> number = numberOf(word);
    const std::optional<double> taken = number ? admitted(*number) : std::nullopt;
    if (!taken) return false;
    numbers.push_back(*taken);
  }
  if (numbers.size() == 1) numbers.assign(values_.size(), numbers.front());
  values_ = numbers;
  return true;
}

bool Knob::setBoolean(const std::string& text) {
  const bool on = text == "1" || text == "true";
  if (!on && text != "0" && text != "false") return false;
  set_value(on ? 1.0 : 0.0);
  return true;
}

bool Knob::setChoice(const std::string& text) {
  const auto label = std::find(choices_.begin(), choices_.end(), text);
  if (label != choices_.end()) {
    set_value(static_cast<double>(label - choices_.begin()));
    return true;
  }
  const std::optional<double> index = numberOf(text);
  const double count = static_cast<double>(choices_.size());
  if (!index || *index != std::trunc(*index) || *index < 0.0 || *index >= count) return false;
  set_value(*index);
  return true;
}

bool Knob::setChannels(const std::string& text) {
  const Words words = wordsOf(text);
  if (words.size() != values_.size()) return false;
  std::vector<double> numbers;
  for (const std::string& word : words) {
    const std::optional<Channel> channel = channelOf(word);
    if (!channel) return false;
    numbers.push_back(static_cast<double>(*channel));
  }
  values_ = numbers;
  return true;
}

bool Knob::setMask(const std::string& text) {
  ChannelSet mask;
  const Words words = wordsOf(text);
  if (words.empty()) return false;
  for (const std::string& word : words) {
    const ChannelSet layer = layerOf(word);
    const std::optional<Channel> channel = channelOf(word);
    if (layer.empty() && !channel) return false;
    mask += layer;
    if (channel) mask += *channel;
  }
  mask_ = mask;
  return true;
}

std::string Knob::textOf(const std::vector<double>& values, const ChannelSet& mask) const {
  if (type_ == Type::Decoration) return text_;
  if (type_ == Type::Mask) return textOfMask(mask);
  std::string text;
  for (const double value : values) {
    if (!text.empty()) text += ' ';
    if (type_ == Type::Boolean) {
      text += value != 0.0 ? "true" : "false";
    } else if (type_ == Type::Choice) {
      // A default may lie outside the choices.
      const auto index = static_cast<std::size_t>(std::max(0.0, value));
      text += index < choices_.size() ? choices_[index] : std::to_string(static_cast<int>(value));
    } else if (type_ == Type::Channels) {
      text += getName(static_cast<Channel>(value));
    } else if (type_ == Type::Integer) {
      text += std::to_string(static_cast<int>(value));
    } else {
      text += textOfNumber(value);
    }
  }
  return text;
}

}  // namespace Image
}  // namespace DD
