#include "frames/FrameBench.h"

#include <algorithm>
#include <future>

#include "DDImage/Thread.h"
#include "frames/Measure.h"

namespace drevin::bench {

FrameBench::FrameBench(const FrameCase& picture, const TablePlan& plan)
    : plan_(plan),
      case_(picture),
      pictures_(framePictures(picture)),
      node_(picture, pictures_),
      timedRows_(spreadRows(picture.size.height, plan.rowsTimed)) {}

const Yardstick& FrameBench::yardstick() const {
  if (yardstick_ == nullptr) yardstick_ = std::make_unique<Yardstick>(case_, pictures_);
  return *yardstick_;
}

void FrameBench::timeFrame() {
  result_ = {};
  frameTimes_.push_back(secondsOf([this] { result_ = node_.render(); }));
}

void FrameBench::timeLiteralRows() {
  LiteralRows rows(yardstick().scene(), yardstick().frame(), pictures_.deep.get());
  literalTimes_.push_back(secondsOf([&] {
    for (const int y : timedRows_)
      literalRows_[y] = rows.row(y);
  }));
}

void FrameBench::timeNodeRows() {
  PlainNodeRows rows(node_);
  nodeTimes_.push_back(secondsOf([&] {
    for (const int y : timedRows_)
      nodeRows_[y] = rows.row(y);
  }));
}

void FrameBench::timeAll() {
  for (int round = 0; round < plan_.rounds; ++round) {
    timeFrame();
    timeLiteralRows();
    timeNodeRows();
  }
}

double FrameBench::frameSeconds() const {
  return median(frameTimes_);
}

double FrameBench::scaled(const std::vector<double>& times) const {
  return wholeFrameSeconds(median(times), static_cast<int>(timedRows_.size()), case_.size.height,
                           DD::Image::Thread::numCPUs);
}

double FrameBench::literalSeconds() const {
  return scaled(literalTimes_);
}

double FrameBench::nodeSeconds() const {
  return scaled(nodeTimes_);
}

FrameErrors FrameBench::errors() const {
  const Yardstick& literal = yardstick();
  const auto errorsOf = [&](int y) {
    const test::LiteralRow expected = literal.row(y);
    FrameErrors errors;
    errors.picture = rowError(pictureRow(result_.image, y), expected);
    for (const Rows* rows : {&literalRows_, &nodeRows_}) {
      if (rows->count(y) != 0) errors.rows = std::max(errors.rows, rowError(rows->at(y), expected));
    }
    return errors;
  };
  std::vector<std::future<FrameErrors>> made;
  for (const int i : spreadRows(static_cast<int>(timedRows_.size()), plan_.rowsChecked))
    made.push_back(
        std::async(std::launch::async, errorsOf, timedRows_[static_cast<std::size_t>(i)]));
  FrameErrors worst;
  for (auto& errors : made) {
    const FrameErrors of = errors.get();
    worst = {std::max(worst.picture, of.picture), std::max(worst.rows, of.rows)};
  }
  return worst;
}

}  // namespace drevin::bench
