#pragma once

/// Tests that hold whichever end of a deep pixel the host calls sample 0.

#include <gtest/gtest.h>

#include <string>

#include "EmbeddedHost/DeepOrder.h"

namespace deep {

/// Sets the host's depth order; puts back the usual one at the end of its scope.
class DeepOrderGuard {
 public:
  explicit DeepOrderGuard(embedded::DeepOrder order) { embedded::setDeepOrder(order); }
  ~DeepOrderGuard() { embedded::setDeepOrder(embedded::DeepOrder::NearFirst); }
  DeepOrderGuard(const DeepOrderGuard&) = delete;
  DeepOrderGuard& operator=(const DeepOrderGuard&) = delete;
};

/// Base of suites that run once in either order.
class InBothOrders : public testing::TestWithParam<embedded::DeepOrder> {
 protected:
  static bool farFirst() { return GetParam() == embedded::DeepOrder::FarFirst; }

 private:
  DeepOrderGuard guard_{GetParam()};
};

inline auto bothOrders() {
  return testing::Values(embedded::DeepOrder::NearFirst, embedded::DeepOrder::FarFirst);
}

inline std::string orderName(const testing::TestParamInfo<embedded::DeepOrder>& info) {
  return info.param == embedded::DeepOrder::NearFirst ? "nearFirst" : "farFirst";
}

}  // namespace deep
