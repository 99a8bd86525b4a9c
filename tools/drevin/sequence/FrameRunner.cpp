#include "sequence/FrameRunner.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "terminal/Signals.h"

namespace drevintool {
namespace {

// What a step throws is the frame's failure.
template <typename Step>
FrameOutcome outcomeOf(const Step& step) {
  const auto failure = [](ExitCode code, const char* text) {
    FrameOutcome outcome;
    outcome.code = code;
    outcome.errors.emplace_back(text);
    return outcome;
  };
  try {
    return step();
  } catch (const ToolError& error) {
    return failure(error.code(), error.what());
  } catch (const std::bad_alloc&) {
    return failure(ExitCode::RenderFailed, "not enough memory");
  } catch (const std::exception& error) {
    return failure(ExitCode::RenderFailed, error.what());
  }
}

/// A frame that was read, or that could not be.
struct ReadFrame {
  std::size_t index = 0;
  std::unique_ptr<FrameWork> work;
  FrameOutcome outcome;
};

class Runner {
 public:
  Runner(std::size_t count, const FrameRunOptions& options,
         const std::function<std::unique_ptr<FrameWork>(std::size_t)>& make,
         const std::function<void(std::size_t, FrameOutcome)>& ended)
      : count_(count), options_(options), make_(make), ended_(ended) {}

  void run() {
    std::thread reader;
    std::vector<std::thread> others;
    try {
      reader = std::thread([this] { readAll(); });
      const std::size_t most = std::min<std::size_t>(options_.inFlight, count_);
      while (others.size() + 1 < most)
        others.emplace_back([this] { finishAll(); });
    } catch (const std::system_error&) {
      // The system gives no more: fewer frames at a time.
    } catch (const std::bad_alloc&) {
      // As above.
    }
    if (reader.joinable()) {
      finishAll();
      reader.join();
    } else {
      oneByOne();
    }
    for (std::thread& other : others)
      other.join();
  }

  void oneByOne() {
    for (std::size_t index = 0; index < count_ && !stopped(); ++index) {
      ReadFrame frame = read(index);
      complete(frame);
      end(std::move(frame));
    }
  }

 private:
  ReadFrame read(std::size_t index) {
    ReadFrame frame;
    frame.index = index;
    frame.outcome = outcomeOf([&] {
      frame.work = make_(index);
      frame.work->read();
      return FrameOutcome();
    });
    return frame;
  }

  // What the frame holds goes with its end.
  static void complete(ReadFrame& frame) {
    if (!frame.outcome.failed()) {
      frame.outcome = outcomeOf([&] { return frame.work->finish(); });
    }
    frame.work.reset();
  }

  void end(ReadFrame frame) {
    const std::lock_guard<std::mutex> lock(endedMutex_);
    if (frame.outcome.failed() && !options_.goOnAfterFailure) stop();
    ended_(frame.index, std::move(frame.outcome));
  }

  void readAll() {
    const std::size_t ahead = std::max(1U, options_.inFlight);
    for (std::size_t index = 0; index < count_; ++index) {
      std::unique_lock<std::mutex> lock(mutex_);
      changed_.wait(lock, [&] {
        return stopped_ || (waiting_.size() < ahead && readingAgain_ == 0 && wantingAll_ == 0);
      });
      if (stopped_ || caughtSignal() != 0) break;
      ++busy_;
      lock.unlock();
      ReadFrame frame = read(index);
      lock.lock();
      --busy_;
      waiting_.push_back(std::move(frame));
      changed_.notify_all();
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    allRead_ = true;
    changed_.notify_all();
  }

  void finishAll() {
    while (std::optional<ReadFrame> frame = next()) {
      if (!frame->work || frame->outcome.failed()) readAgain(*frame);
      complete(*frame);
      if (frame->outcome.wantsMemory()) completeAlone(*frame);
      end(std::move(*frame));
      leave();
    }
  }

  // What could not be read beside the frames before it, or had to go for one of them.
  void readAgain(ReadFrame& frame) {
    frame = read(frame.index);
    const std::lock_guard<std::mutex> lock(mutex_);
    --readingAgain_;
    changed_.notify_all();
  }

  // Once more from the start, when no other frame holds memory: those that are being finished have
  // ended then, and those that were read ahead are read again later.
  void completeAlone(ReadFrame& frame) {
    {
      std::unique_lock<std::mutex> lock(mutex_);
      --busy_;
      ++wantingAll_;
      changed_.notify_all();
      changed_.wait(lock, [&] { return busy_ == 0; });
      ++busy_;
      for (ReadFrame& other : waiting_)
        other.work.reset();
    }
    if (options_.onceMore) options_.onceMore(frame.index);
    frame = read(frame.index);
    complete(frame);
    const std::lock_guard<std::mutex> lock(mutex_);
    --wantingAll_;
    changed_.notify_all();
  }

  std::optional<ReadFrame> next() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(
        lock, [&] { return stopped_ || (wantingAll_ == 0 && (allRead_ || !waiting_.empty())); });
    if (caughtSignal() != 0 && !stopped_) {
      // The reader may be waiting for room among frames that nobody will take.
      stopped_ = true;
      changed_.notify_all();
    }
    if (stopped_ || waiting_.empty()) return std::nullopt;
    ReadFrame frame = std::move(waiting_.front());
    waiting_.pop_front();
    if (!frame.work || frame.outcome.failed()) ++readingAgain_;
    ++busy_;
    changed_.notify_all();
    return frame;
  }

  void leave() {
    const std::lock_guard<std::mutex> lock(mutex_);
    --busy_;
    changed_.notify_all();
  }

  void stop() {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopped_ = true;
    changed_.notify_all();
  }

  bool stopped() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return stopped_ || caughtSignal() != 0;
  }

  const std::size_t count_;
  const FrameRunOptions options_;
  const std::function<std::unique_ptr<FrameWork>(std::size_t)>& make_;
  const std::function<void(std::size_t, FrameOutcome)>& ended_;
  std::mutex endedMutex_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<ReadFrame> waiting_;
  int busy_ = 0;        // frames that are being read or finished
  int wantingAll_ = 0;  // frames that are, or are to be, completed alone
  int readingAgain_ = 0;
  bool allRead_ = false;
  bool stopped_ = false;
};

}  // namespace

void runFrames(std::size_t count, const FrameRunOptions& options,
               const std::function<std::unique_ptr<FrameWork>(std::size_t)>& make,
               const std::function<void(std::size_t, FrameOutcome)>& ended) {
  Runner runner(count, options, make, ended);
  if (count <= 1) {
    runner.oneByOne();
  } else {
    runner.run();
  }
}

}  // namespace drevintool
