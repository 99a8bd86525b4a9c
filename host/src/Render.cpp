#include "EmbeddedHost/Render.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>

#include "DDImage/Thread.h"
#include "Guarded.h"
#include "ThreadPool.h"

namespace embedded {

using DD::Image::Box;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Row;
using DD::Image::Thread;

namespace {

/// The rows of one render, taken by the row threads one after the other.
class RowWork {
 public:
  RowWork(RenderSession& session, const ChannelSet& channels, unsigned threads)
      : session_(session), box_(session.box()), channels_(channels), running_(threads) {
    const auto pixels = static_cast<std::size_t>(box_.w()) * static_cast<std::size_t>(box_.h());
    for (const Channel z : channels_)
      planes_[z] = std::make_shared<Plane>(pixels);
  }

  static void threadBody(unsigned /*index*/, unsigned /*count*/, void* self) {
    static_cast<RowWork*>(self)->run();
  }

  /// Waits for the end of all rows, calling `report` about ten times a second.
  template <class Report>
  void waitForEnd(const Report& report) {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!ended_.wait_for(lock, std::chrono::milliseconds(100), [&] { return running_ == 0; })) {
      lock.unlock();
      report(rowsDone_.load());
      lock.lock();
    }
  }

  int rowsDone() const { return rowsDone_.load(); }

  /// Lets the threads end after the rows that they are making.
  void stop() { stopped_ = true; }

  Image image(const DD::Image::Format& format) const {
    Image image{format, box_, {}};
    for (const auto& [channel, plane] : planes_)
      image.planes[channel] = plane;
    return image;
  }

 private:
  void run() {
    const Ending ending(*this);
    for (int y = box_.y() + next_++; y < box_.t(); y = box_.y() + next_++) {
      if (stopped_ || !makeRow(y)) break;
      ++rowsDone_;
    }
  }

  /// Tells that a thread has ended, however it ends.
  class Ending {
   public:
    explicit Ending(RowWork& work) : work_(work) {}
    ~Ending() {
      const std::lock_guard<std::mutex> lock(work_.mutex_);
      --work_.running_;
      work_.ended_.notify_all();
    }
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

   private:
    RowWork& work_;
  };

  bool makeRow(int y) {
    Row row(box_.x(), box_.r());
    if (!session_.row(y, box_.x(), box_.r(), channels_, row)) return false;
    const auto offset = static_cast<std::ptrdiff_t>(y - box_.y()) * box_.w();
    for (const auto& [channel, plane] : planes_) {
      const float* values = row[channel];
      std::copy(values + box_.x(), values + box_.r(), plane->data() + offset);
    }
    return true;
  }

  RenderSession& session_;
  Box box_;
  ChannelSet channels_;
  std::map<Channel, std::shared_ptr<Plane>> planes_;
  std::atomic<int> next_{0};
  std::atomic<int> rowsDone_{0};
  std::atomic<bool> stopped_{false};
  std::mutex mutex_;
  std::condition_variable ended_;
  unsigned running_;
};

/// Runs all row threads to their end, also when `report` throws.
template <class Report>
void runThreads(RowWork& work, unsigned threads, const Report& report) {
  Thread::spawn(RowWork::threadBody, threads, &work);
  try {
    // Where the system gives no thread at all, the wait at the end does all the work.
    if (ThreadPool::instance().hasThreads()) work.waitForEnd(report);
  } catch (...) {
    work.stop();
    Thread::wait(&work);
    throw;
  }
  Thread::wait(&work);
}

void makeRows(RenderSession& session, const RenderOptions& options, RenderResult& result) {
  session.beginStage("Rows");
  ChannelSet channels(options.channels);
  channels &= session.info().channels();
  RowWork work(session, channels, result.threads);
  const int total = session.box().h();
  const auto report = [&](int done) {
    if (options.progress) options.progress({"Rows", done, total});
  };
  report(0);
  runThreads(work, result.threads, report);
  if (!session.ok()) return;
  report(work.rowsDone());
  result.image = work.image(session.info().format());
}

std::string hexadecimal(DD::Image::U64 value) {
  char text[17];
  std::snprintf(text, sizeof(text), "%016llx", static_cast<unsigned long long>(value));
  return text;
}

}  // namespace

RenderResult render(Node& node, const RenderOptions& options) {
  RenderResult result;
  result.threads = options.threads != 0 ? options.threads : Thread::numCPUs;
  auto session = std::make_unique<RenderSession>(node, options);
  if (session->ok()) {
    result.image.format = session->info().format();
    result.image.box = session->box();
    if (!session->box().empty() && !options.channels.empty()) {
      guarded(node.op(), [&] { makeRows(*session, options, result); });
    }
  }
  result.requests = session->requests();
  result.stages = session->stages();
  result.hash = hexadecimal(session->hash().value());
  result.messages = session->messages();
  const bool failed = session->failed();
  session.reset();
  // Closing may bring the node's last messages.
  if (!failed && node.hasError()) result.messages = node.messages();
  if (failed || node.hasError()) {
    result.status = RenderStatus::Error;
  } else {
    result.status = abortRequested() ? RenderStatus::Aborted : RenderStatus::Done;
  }
  if (result.status != RenderStatus::Done) result.image = Image();
  return result;
}

}  // namespace embedded
