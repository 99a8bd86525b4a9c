#pragma once

/// The Kernel image as an aperture: its pixels, stretched over the hero kernel.

#include <array>
#include <functional>
#include <map>
#include <vector>

namespace drevin {

/// Which part of the Kernel image a hero kernel shows. A width or height of 0 stands for no image.
struct dvKernelSampling {
  int left = 0;         ///< first column of the image's bounding box, px
  int bottom = 0;       ///< first row of the image's bounding box, px
  int width = 0;        ///< columns of the bounding box
  int height = 0;       ///< rows of the bounding box
  float scaleX = 1.0F;  ///< image columns per hero column
  float scaleY = 1.0F;  ///< image rows per hero row
};

/// Gives the Kernel image's value at (column, row) in a channel; asked only inside the bounding
/// box.
using dvPixelReader = std::function<float(int column, int row, int channel)>;

/// The Kernel image as the hero kernel sees it.
struct dvKernelInput {
  dvPixelReader read;            ///< empty: nothing is connected and every read gives 0
  std::vector<int> channels;     ///< channel numbers that the image has, ascending
  int missingKernelChannel = 0;  ///< stands in for a channel that the image lacks; 0 none
};

/// The channel to read for a wanted one: `missingKernelChannel` where that is set and the image
/// lacks the wanted channel, else the wanted one.
int inputKernelChannel(const dvKernelInput& input, int wanted);

/// Rows of a hero kernel: at each pixel the Catmull-Rom cubic over 4 x 4 image pixels around
/// ((column + 0.5) * scaleX, (row + 0.5) * scaleY), first down the columns, then across.
///
/// The neighbourhood repeats the edge pixels of the bounding box. Not limited: it may overshoot.
/// Without an image 0. An image pixel is read once for rows that follow one another: reading is the
/// host's, and takes far longer than the cubic.   Tests: InputKernel_test.cpp
class dvInputKernelRows {
 public:
  /// Of `side` columns. `channel` is read as it is; see inputKernelChannel(). The input must
  /// outlive this.
  dvInputKernelRows(const dvKernelInput& input, const dvKernelSampling& sampling, int side,
                    int channel);

  /// Makes a row, `side` values.
  void sample(int row, float* values);

 private:
  /// A place along an axis of the image: the four pixels around it, and the fraction between the
  /// middle two.
  struct Place {
    std::array<int, 4> pixels{};  ///< ascending
    float fraction = 0.0F;
  };

  static Place placeOf(int index, float scale, int first, int size);
  /// The row of the image, of the columns that the kernel shows.
  const std::vector<float>& imageRow(int y);

  const dvKernelInput& input_;
  dvKernelSampling sampling_;
  int channel_;
  std::vector<int> columns_;   ///< of the image, ascending
  std::vector<Place> across_;  ///< by column of the kernel; pixels as places in columns_
  std::map<int, std::vector<float>> rows_;  ///< read last
  std::vector<float> down_;                 ///< the cubic down each of the columns
};

}  // namespace drevin
