#include "frames/SideBySide.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>

#include "frames/FrameNode.h"
#include "frames/Measure.h"

namespace drevin::bench {

namespace {

void answerLine(const std::string& text) {
  fmt::print("{}\n", text);
  std::fflush(stdout);
}

double secondsIn(const std::string& answer) {
  const double seconds = std::stod(answer);
  if (!(seconds > 0.0)) throw std::runtime_error("a render side by side tells no time: " + answer);
  return seconds;
}

}  // namespace

SideBySide::SideBySide(int processes, const FrameCase& picture) {
  for (int i = 0; i < processes; ++i) {
    processes_.push_back(std::make_unique<ChildProcess>(
        thisProgram(),
        std::vector<std::string>{"drevin_frames", "--on-request", "--threads", "1", picture.scene,
                                 fmt::format("{}", picture.settings.multiplier),
                                 fmt::format("{}", picture.size.width),
                                 fmt::format("{}", picture.size.height)}));
  }
  for (const auto& process : processes_)
    process->answer();
}

double SideBySide::seconds() {
  for (const auto& process : processes_)
    process->tell("render");
  double longest = 0.0;
  for (const auto& process : processes_)
    longest = std::max(longest, secondsIn(process->answer()));
  return longest;
}

void renderOnRequest(const FrameCase& picture) {
  FrameNode node(picture, framePictures(picture));
  embedded::RenderResult result;
  answerLine("ready");
  for (std::string request; std::getline(std::cin, request);) {
    result = {};
    answerLine(fmt::format("{:.9f}", secondsOf([&] { result = node.render(); })));
  }
}

}  // namespace drevin::bench
