#include "EmbeddedHost/DeepOrder.h"

#include <atomic>

namespace embedded {

namespace {

std::atomic<DeepOrder> givenOrder{DeepOrder::NearFirst};

}  // namespace

void setDeepOrder(DeepOrder value) {
  givenOrder = value;
}

DeepOrder deepOrder() {
  return givenOrder;
}

}  // namespace embedded
