#pragma once

/// Clocks and statistics of the frame table.

#include <functional>
#include <vector>

namespace drevin::bench {

/// Wall-clock seconds that `work` takes.
double secondsOf(const std::function<void()>& work);

/// Processor seconds of this thread that `work` takes: what other programs do at the same time
/// hardly counts.
double threadSecondsOf(const std::function<void()>& work);

/// The middle value; of an even number the mean of the two in the middle. Throws
/// std::invalid_argument for none.
double median(std::vector<double> values);

/// `count` rows of [0, height), each in the middle of its equal part. At most `height` of them.
std::vector<int> spreadRows(int height, int count);

/// Time of a whole frame of `height` rows on `threads` threads that share the work perfectly, when
/// `rows` rows take `seconds` on one.
double wholeFrameSeconds(double seconds, int rows, int height, unsigned threads);

}  // namespace drevin::bench
