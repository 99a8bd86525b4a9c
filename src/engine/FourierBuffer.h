#pragma once

/// Memory for strips: aligned as the vector code reads it.

#include <cstddef>
#include <memory>
#include <new>

#include "engine/FourierPasses.h"

namespace drevin {

class dvFourierBuffer {
 public:
  /// Values are undefined at first, and after it has grown.
  dvFourierBuffer() = default;
  explicit dvFourierBuffer(std::size_t floats) { reserve(floats); }

  /// Grows to hold `floats`; never shrinks.
  void reserve(std::size_t floats) {
    if (floats <= size_) return;
    values_.reset(static_cast<float*>(
        ::operator new[](floats * sizeof(float), std::align_val_t{dvStripAlignment})));
    size_ = floats;
  }
  std::size_t size() const { return size_; }
  float* data() { return values_.get(); }
  const float* data() const { return values_.get(); }

 private:
  struct Release {
    void operator()(float* values) const {
      ::operator delete[](values, std::align_val_t{dvStripAlignment});
    }
  };

  std::size_t size_ = 0;
  std::unique_ptr<float[], Release> values_;
};

}  // namespace drevin
