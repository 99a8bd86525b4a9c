#include "sequence/FrameTask.h"

#include <map>

#include "sequence/FrameList.h"

namespace drevintool {

std::string frameNames(const std::vector<FrameTask>& tasks) {
  std::vector<std::string> views;
  std::map<std::string, std::vector<int>> frames;
  for (const FrameTask& task : tasks) {
    if (frames.count(task.view) == 0) views.push_back(task.view);
    std::vector<int>& list = frames[task.view];
    if (task.frame) list.push_back(*task.frame);
  }
  std::string text;
  for (const std::string& view : views) {
    const std::string list = frameListText(frames[view]);
    text += text.empty() ? "" : "; ";
    text += list;
    text += list.empty() || view.empty() ? "" : " ";
    text += view;
  }
  return text;
}

}  // namespace drevintool
