#pragma once

/// Memory for whole pictures.

#include <cstddef>
#include <new>
#include <utility>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace drevin {

/// Size of a large page of the processor, bytes.
constexpr std::size_t dvLargePage = std::size_t{2} << 20;

/// Allocator of vectors that may hold a whole picture: from two large pages on it asks for large
/// pages, where the system gives them. With small ones the first touch of a picture takes longer
/// than to fill it.
template <typename Value>
struct dvLargeAllocator {
  using value_type = Value;

  dvLargeAllocator() = default;
  template <typename Other>
  dvLargeAllocator(const dvLargeAllocator<Other>& /*other*/) {}

  Value* allocate(std::size_t count) {
    if (!isLarge(count)) return static_cast<Value*>(::operator new(count * sizeof(Value)));
    void* memory = ::operator new (count * sizeof(Value), std::align_val_t{dvLargePage});
#ifdef MADV_HUGEPAGE
    // A wish: refused, it changes nothing.
    madvise(memory, count * sizeof(Value) / dvLargePage * dvLargePage, MADV_HUGEPAGE);
#endif
    return static_cast<Value*>(memory);
  }
  void deallocate(Value* memory, std::size_t count) {
    if (isLarge(count)) {
      ::operator delete (memory, std::align_val_t{dvLargePage});
    } else {
      ::operator delete(memory);
    }
  }

 private:
  static bool isLarge(std::size_t count) {
    return count >= 2 * dvLargePage / sizeof(Value);
  }
};

template <typename A, typename B>
bool operator==(const dvLargeAllocator<A>& /*a*/, const dvLargeAllocator<B>& /*b*/) {
  return true;
}
template <typename A, typename B>
bool operator!=(const dvLargeAllocator<A>& /*a*/, const dvLargeAllocator<B>& /*b*/) {
  return false;
}

/// Likewise of vectors that are made without values, to be filled by many threads: each touches
/// its part first.
template <typename Value>
struct dvUnfilledAllocator : dvLargeAllocator<Value> {
  using value_type = Value;
  template <typename Other>
  struct rebind {
    using other = dvUnfilledAllocator<Other>;
  };

  dvUnfilledAllocator() = default;
  template <typename Other>
  dvUnfilledAllocator(const dvUnfilledAllocator<Other>& /*other*/) {}

  template <typename Made>
  void construct(Made* place) {
    ::new (static_cast<void*>(place)) Made;
  }
  template <typename Made, typename... From>
  void construct(Made* place, From&&... from) {
    ::new (static_cast<void*>(place)) Made(std::forward<From>(from)...);
  }
};

}  // namespace drevin
