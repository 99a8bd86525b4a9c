#include "DDImage/Hash.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

#include "host/HostBench.h"

using DD::Image::Hash;
using smooth::HostBench;

TEST(Hash, sameAppends_areEqual) {
  Hash a;
  Hash b;
  EXPECT_EQ(a, b);
  for (Hash* hash : {&a, &b}) {
    hash->append("text");
    hash->append(1.5F);
    hash->append(3);
    hash->append(true);
  }
  EXPECT_EQ(a, b);
  EXPECT_EQ(a.value(), a.getHash());
  a.reset();
  EXPECT_EQ(a, Hash());
}

TEST(Hash, orderAndLength_count) {
  const auto hashOf = [](std::initializer_list<int> values) {
    Hash hash;
    for (const int value : values)
      hash.append(value);
    return hash.value();
  };
  EXPECT_NE(hashOf({1, 2}), hashOf({2, 1}));
  EXPECT_NE(hashOf({0}), hashOf({}));
  EXPECT_NE(hashOf({0, 0}), hashOf({0}));
}

TEST(Hash, boundsOfTexts_count) {
  Hash a;
  a.append("ab");
  a.append("c");
  Hash b;
  b.append("a");
  b.append("bc");
  EXPECT_NE(a, b);
}

TEST(Hash, zeroByteAtTheEnd_counts) {
  Hash a;
  a.append("abc", 3);
  Hash b;
  b.append("abc", 4);
  EXPECT_NE(a, b);
}

TEST(Hash, everyByteOfLongData_counts) {
  std::vector<unsigned char> data(101, 200);
  const auto hashOf = [&] {
    Hash hash;
    hash.append(data.data(), data.size());
    return hash.value();
  };
  std::set<DD::Image::U64> seen = {hashOf()};
  for (unsigned char& byte : data) {
    byte = 8;
    EXPECT_TRUE(seen.insert(hashOf()).second);
    byte = 200;
  }
  data[0] = 1;
  data[8] = 2;
  EXPECT_TRUE(seen.insert(hashOf()).second);
  std::swap(data[0], data[8]);
  EXPECT_TRUE(seen.insert(hashOf()).second);
  for (std::size_t length = 0; length < data.size(); ++length) {
    Hash hash;
    hash.append(std::vector<unsigned char>(length, 200).data(), length);
    EXPECT_TRUE(seen.insert(hash.value()).second) << length;
  }
}

TEST(OpHash, everyControl_changesIt) {
  const HostBench bench;
  std::set<DD::Image::U64> seen = {bench.op().hash().value()};
  const std::pair<const char*, const char*> changes[] = {
      {"gain", "0.5"},      {"offset", "0.5"},   {"repeats", "3"},    {"on", "0"},
      {"method", "middle"}, {"tint", "1 1 1"},   {"window", "0 100"}, {"depth", "rgba.red"},
      {"only", "rgba.red"}, {"mask", "rgba.red"}};
  for (const auto& [name, text] : changes) {
    ASSERT_TRUE(bench.knob(name).set_text(text)) << name;
    EXPECT_TRUE(seen.insert(bench.op().hash().value()).second) << name;
  }
}

TEST(OpHash, sameValues_areEqualAgain) {
  const HostBench bench;
  const Hash before = bench.op().hash();
  bench.knob("gain").set_value(0.5);
  bench.knob("gain").set_value(1.0);
  EXPECT_EQ(bench.op().hash(), before);
}

TEST(OpHash, defaultSetAsText_isEqual) {
  const Node node(smooth::SmoothOp::description);
  DD::Image::Knob& gain = *node.knob("gain");
  gain.set_value(static_cast<double>(0.1F));
  const DD::Image::Hash before = node.op().hash();
  ASSERT_TRUE(gain.set_text("0.1"));
  EXPECT_EQ(node.op().hash(), before) << "the operator sees the same float";
}

TEST(OpHash, noRerenderControl_isLeftOut) {
  const HostBench bench;
  bench.knob("gain").set_flag(DD::Image::Knob::NO_RERENDER);
  const Hash before = bench.op().hash();
  bench.knob("gain").set_value(0.5);
  EXPECT_EQ(bench.op().hash(), before);
}

TEST(OpHash, enabling_doesNotChangeIt) {
  const HostBench bench;
  const Hash before = bench.op().hash();
  bench.knob("gain").disable();
  bench.knob("on").hide();
  EXPECT_EQ(bench.op().hash(), before);
}

TEST(OpHash, inputsPixels_changeIt) {
  HostBench bench;
  const Hash before = bench.op().hash();
  embedded::Image other = smooth::markedImage(DD::Image::Box(0, 0, 8, 6));
  embedded::Plane red = *other.planes[DD::Image::Chan_Red];
  red[17] += 1.0F;
  other.planes[DD::Image::Chan_Red] = std::make_shared<embedded::Plane>(red);
  embedded::ImageInput changed(other);
  ASSERT_TRUE(bench.node.connect(0, &changed));
  EXPECT_NE(bench.op().hash(), before);
  ASSERT_TRUE(bench.node.connect(0, &bench.picture));
  EXPECT_EQ(bench.op().hash(), before);
}

TEST(OpHash, resultOfARender_isTheStoredOperators) {
  HostBench bench;
  const embedded::RenderResult first = bench.render();
  EXPECT_EQ(first.hash.size(), 16U);
  EXPECT_EQ(first.hash.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_EQ(bench.render().hash, first.hash);
  bench.knob("gain").set_value(0.5);
  EXPECT_NE(bench.render().hash, first.hash);
}
