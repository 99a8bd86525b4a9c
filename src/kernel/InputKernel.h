#pragma once

/// The Kernel image as an aperture: its pixels, stretched over the hero kernel.

#include <functional>
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

/// Value of one hero pixel: the Catmull-Rom cubic over 4 x 4 image pixels around
/// ((column + 0.5) * scaleX, (row + 0.5) * scaleY), first down the columns, then across.
///
/// The neighbourhood repeats the edge pixels of the bounding box. Not limited: it may overshoot.
/// `channel` is read as it is; see inputKernelChannel(). Without an image 0.
float sampleInputKernel(const dvKernelInput& input, const dvKernelSampling& sampling, int column,
                        int row, int channel);

}  // namespace drevin
