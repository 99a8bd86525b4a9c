#pragma once

/// The samples of one deep pixel as plain lists.

#include <cstddef>
#include <vector>

namespace drevin {

/// Which value of a sample is what: channel numbers in ascending order and the places of the
/// channels with a meaning of their own.
struct dvDeepLayout {
  static constexpr int absent = -1;

  std::vector<int> channels;  ///< ascending channel numbers; a sample has one value for each
  int front = absent;         ///< place of the front depth in `channels`
  int back = absent;          ///< place of the back depth
  int depth = absent;         ///< place of the flat depth
  int alpha = absent;         ///< place of alpha

  std::size_t size() const { return channels.size(); }
};

/// Samples one after the other, layout.size() floats each, in the host's order. The depths are held
/// apart from the values, because a layout need not have depth channels.
struct dvDeepSamples {
  std::vector<float> fronts;  ///< scene units
  std::vector<float> backs;   ///< scene units
  std::vector<float> values;  ///< premultiplied

  std::size_t count() const { return fronts.size(); }
  void clear() {
    fronts.clear();
    backs.clear();
    values.clear();
  }
};

}  // namespace drevin
