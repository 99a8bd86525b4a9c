#include "render/ChannelPlan.h"

#include <algorithm>

#include "depth/DepthChoice.h"
#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::ChannelSet;

constexpr int kFocalDistanceView = 2;
constexpr int kFilterShape = 3;
constexpr int kFocusMatte = 4;

int outputType(const Node& node) {
  const DD::Image::Knob* knob = node.knob("outputType");
  return knob == nullptr ? 0 : static_cast<int>(knob->get_value());
}

bool makesRgb(int type) {
  return type == kFocalDistanceView || type == kFilterShape || type == kFocusMatte;
}

DD::Image::Channel numberOf(const std::string& hostName) {
  return DD::Image::getChannel(hostName.c_str());
}

bool isRendered(const PlannedChannel& channel, const Node& node) {
  if (channel.source != nullptr && channel.source->isUint()) return false;
  const DD::Image::Channel number = numberOf(channel.hostName);
  if (number == DD::Image::Chan_Black) return false;
  const int type = outputType(node);
  if (type == kFilterShape) return true;
  if (makesRgb(type)) return isRgb(channel.hostName);
  const DD::Image::Knob* mask = node.knob("bokehChannels");
  return mask == nullptr || mask->mask().all() || mask->mask().contains(number);
}

class Planner {
 public:
  Planner(const Picture& input, const Node& node) : input_(input), node_(node) {}

  void addAll() {
    for (const PictureChannel& channel : input_.channels)
      add(channel);
    if (!makesRgb(outputType(node_))) return;
    for (const char* letter : {"R", "G", "B"})
      addNamed(letter);
  }

  // A set that the input holds only in part gives that part.
  void addSet(bool (*member)(const std::string&)) {
    const std::size_t before = plan_.size();
    for (const PictureChannel& channel : input_.channels) {
      if (member(channel.hostName)) add(channel);
    }
    if (makesRgb(outputType(node_))) {
      for (const char* letter : {"R", "G", "B"})
        addNamed(letter);
    }
    if (plan_.size() == before) failMissing("R, G, B");
  }

  void addNamed(const std::string& name) {
    if (const PictureChannel* channel = findChannel(input_, name)) {
      add(*channel);
      return;
    }
    const std::string hostName = hostChannelName(name);
    if (!makesRgb(outputType(node_)) || !isRgb(hostName)) failMissing(name);
    const std::string letter = hostName == "rgba.red" ? "R" : hostName == "rgba.green" ? "G" : "B";
    push({letter, hostName, nullptr, false});
  }

  std::vector<PlannedChannel> take() { return std::move(plan_); }

 private:
  [[noreturn]] void failMissing(const std::string& name) const {
    throw ToolError(ExitCode::InputUnreadable,
                    oneLine(input_.path + ": has no channel " + name + channelHint(input_, name)));
  }

  void add(const PictureChannel& channel) {
    push({channel.fileName, channel.hostName, &channel, false});
  }

  void push(PlannedChannel channel) {
    const auto same = [&](const PlannedChannel& c) { return c.hostName == channel.hostName; };
    if (std::any_of(plan_.begin(), plan_.end(), same)) return;
    channel.rendered = isRendered(channel, node_);
    plan_.push_back(std::move(channel));
  }

  const Picture& input_;
  const Node& node_;
  std::vector<PlannedChannel> plan_;
};

}  // namespace

std::vector<PlannedChannel> planChannels(const Picture& input, const Node& node,
                                         const std::vector<std::string>& wanted) {
  Planner planner(input, node);
  if (wanted.empty()) planner.addAll();
  for (const std::string& name : wanted) {
    if (name == "all") {
      planner.addAll();
    } else if (name == "rgb" || name == "rgba") {
      planner.addSet(name == "rgb" ? isRgb : isRgba);
    } else {
      planner.addNamed(name);
    }
  }
  return planner.take();
}

ChannelSet renderedSet(const std::vector<PlannedChannel>& plan) {
  ChannelSet set;
  for (const PlannedChannel& channel : plan) {
    if (channel.rendered) set += numberOf(channel.hostName);
  }
  return set;
}

void checkDepthChannel(const Picture& input, const Node& node) {
  const DD::Image::Knob* knob = node.knob("depthChannel");
  if (knob == nullptr || outputType(node) == kFilterShape) return;
  const DD::Image::Channel depth = knob->channel();
  if (depth == DD::Image::Chan_Black) return;
  const std::string name = DD::Image::getName(depth);
  const auto same = [&](const PictureChannel& c) { return c.hostName == name; };
  if (std::any_of(input.channels.begin(), input.channels.end(), same)) return;
  const std::vector<const PictureChannel*> possible = possibleDepths(input);
  const std::string perhaps =
      possible.empty() ? "," : ", perhaps " + possible.front()->fileName + ";";
  throw ToolError(ExitCode::InputUnreadable, oneLine(input.path + ": has no depth channel " + name +
                                                     "; choose one with --set depthChannel=NAME" +
                                                     perhaps + " it has " + channelList(input)));
}

std::string missingKernelWarning(const Picture& kernel, const Node& node,
                                 const std::vector<PlannedChannel>& plan) {
  const DD::Image::Knob* type = node.knob("kernelType");
  const DD::Image::Knob* standIn = node.knob("missingKernelChannel");
  const bool used = type != nullptr && type->get_value() == 0.0;
  if (!used || standIn == nullptr || standIn->channel() != DD::Image::Chan_Black) return {};
  std::string missing;
  for (const PlannedChannel& planned : plan) {
    const auto same = [&](const PictureChannel& c) { return c.hostName == planned.hostName; };
    if (!planned.rendered || std::any_of(kernel.channels.begin(), kernel.channels.end(), same))
      continue;
    missing += (missing.empty() ? "" : ", ") + planned.fileName;
  }
  if (missing.empty()) return {};
  return oneLine(kernel.path + ": has no channel " + missing +
                 ", which comes out black; name one to use instead with --set "
                 "missingKernelChannel=NAME");
}

}  // namespace drevintool
