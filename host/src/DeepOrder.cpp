#include "EmbeddedHost/DeepOrder.h"

#include <atomic>

namespace embedded {

namespace {

std::atomic<DeepOrder> order{DeepOrder::NearFirst};

}  // namespace

void setDeepOrder(DeepOrder value) {
  order = value;
}

DeepOrder deepOrder() {
  return order;
}

}  // namespace embedded
