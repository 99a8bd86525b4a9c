#pragma once

/// Calls into operators, which anything may be thrown from.

#include <exception>
#include <new>

#include "DDImage/Op.h"

namespace embedded {

/// Runs a step; whatever it throws becomes an error of the operator, so that no frame brings the
/// program down.
template <class Step>
void guarded(const DD::Image::Op& op, const Step& step) {
  try {
    step();
  } catch (const std::bad_alloc&) {
    op.error("%s", "out of memory");
  } catch (const std::exception& exception) {
    op.error("%s", exception.what());
  } catch (...) {
    op.error("%s", "unknown exception");
  }
}

}  // namespace embedded
