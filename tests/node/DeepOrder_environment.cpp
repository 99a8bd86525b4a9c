#include <gtest/gtest.h>

#include <cstdlib>

#include "EmbeddedHost/DeepOrder.h"

namespace {

/// Lets the whole suite run on a host that serves the farthest sample first, where the environment
/// variable DREVIN_TEST_FAR_FIRST is set.
class DeepOrderEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    if (std::getenv("DREVIN_TEST_FAR_FIRST") == nullptr) return;
    embedded::setDeepOrder(embedded::DeepOrder::FarFirst);
  }
};

const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new DeepOrderEnvironment);

}  // namespace
