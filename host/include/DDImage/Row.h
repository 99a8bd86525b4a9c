#pragma once

/// One row of pixels: a float for each column of each channel.

#include <cstddef>
#include <memory>
#include <vector>

#include "DDImage/ChannelSet.h"

namespace DD {
namespace Image {

class Iop;

/// Columns x to r - 1 of some channels. Memory is held only for channels that are written; all
/// pointers are biased, so that index x is column x. Not for use by several threads at once.
class DD_EXPORT Row {
 public:
  Row(int x, int r);
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;
  ~Row();

  int getLeft() const { return x_; }
  int getRight() const { return r_; }

  /// Values of a channel; zeros if it was never written.
  const float* operator[](Channel z) const {
    const auto n = static_cast<std::size_t>(z);
    return n < slots_.size() && slots_[n].data != nullptr ? slots_[n].data : zeros();
  }
  /// Memory to write a channel into. What it holds at first is not defined after get, copy and
  /// erase: a writer fills all of its columns.
  float* writable(Channel z);

  /// Reads columns x to r - 1 of row y, within the columns of this row. Outside the operator's box
  /// the nearest edge pixel repeats; channels that it lacks, an empty box and an operator in error
  /// read 0.
  void get(Iop& iop, int y, int x, int r, ChannelMask channels);
  void copy(const Row& from, ChannelMask channels, int x, int r);
  void copy(const Row& from, Channel z, int x, int r) { copy(z, from, z, x, r); }
  void copy(Channel to, const Row& from, Channel source, int x, int r);
  void erase(ChannelMask channels);
  void erase(Channel z);
  /// True if the channel was never written, or erased since.
  bool is_zero(Channel z) const;

 private:
  /// `data` points into `own`, or at memory of a picture that outlives the row.
  struct Slot {
    const float* data = nullptr;
    std::unique_ptr<float[]> own;
  };

  std::size_t width() const { return r_ > x_ ? static_cast<std::size_t>(r_ - x_) : 0; }
  const float* zeros() const;
  Slot& slot(Channel z);
  bool readDirectly(Iop& iop, int y, int x, int r, Channel z);
  void readThroughEngine(Iop& iop, int y, int x, int r, const ChannelSet& channels);
  void copyPadded(Channel z, const float* source, int left, int right, int x, int r);

  int x_;
  int r_;
  std::vector<Slot> slots_;
  mutable std::vector<float> wideZeros_;
};

}  // namespace Image
}  // namespace DD
