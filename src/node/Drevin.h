#pragma once

/// The node: a lens defocus from a depth channel, as an operator of the compositing host.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "DDImage/Hash.h"
#include "DDImage/Iop.h"
#include "DDImage/Knobs.h"
#include "DDImage/MetaData.h"
#include "DDImage/Row.h"
#include "kernel/KernelBank.h"
#include "kernel/KernelImage.h"
#include "node/DeepPlan.h"
#include "node/DrevinSettings.h"
#include "node/FlatPlan.h"
#include "node/PreparedPicture.h"

namespace drevin {

/// Numbers of the node's inputs.
struct dvInput {
  static constexpr int image = 0;
  static constexpr int kernel = 1;
  static constexpr int camera = 2;
  static constexpr int deep = 3;
  static constexpr int mattes = 4;
  static constexpr int count = 5;
};

class Drevin : public DD::Image::Iop {
 public:
  explicit Drevin(Node* node);
  ~Drevin() override;

  void knobs(DD::Image::Knob_Callback f) override;
  int knob_changed(DD::Image::Knob* knob) override;
  bool test_input(int input, DD::Image::Op* op) const override;
  void set_input(int input, DD::Image::Op* op, int inputOfOp, int offset) override;
  void append(DD::Image::Hash& hash) override;
  DD::Image::Op* default_input(int input) const override;
  const char* node_help() const override;
  const char* input_label(int input, char* buffer) const override;
  const char* Class() const override;
  const DD::Image::MetaData::Bundle& _fetchMetaData(const char* key) override;
  void engine(int y, int x, int r, DD::Image::ChannelMask channels, DD::Image::Row& out) override;

  using Iop::in_channels;
  /// Adds what a row reads of input 0: the processed channels, the depth and alpha.
  void in_channels(DD::Image::ChannelSet& channels) const;
  /// Adds what a row reads of the deep input: as above with front and back instead of depth.
  void deep_in_channels(DD::Image::ChannelSet& channels) const;

  // Kernels, there while the node is open (Kernels.cpp) -----------------------------------------

  /// Makes the kernels that the output type needs: aperture image, size estimate, bank. An opening
  /// begins with it.
  void initialize();
  /// The aperture image; its side is the format's smaller one when `sizeToFormat`.
  void makeHeroKernel(bool sizeToFormat);
  /// Scans the frame's depth and sets kernelSize and padding to what its largest blur needs.
  void computeOptimalPadding();
  /// Builds bank entry `index`; different entries may be built at once.
  void initializeKernel(int index);
  /// Builds bank entries 2 * pair - 1 and 2 * pair, which are the same kernel and share its planes;
  /// pair 0 is entry 0 alone. Entries that the bank does not have are passed over.
  void initializeKernelPair(int pair);
  /// Fills plane z of `kernel`, sized size x size, by resampling the hero kernel.
  void buildKernel(dvChannelFloatBuffer& kernel, int size, const DD::Image::Channel& z);
  /// Whether an abort has been seen since the opening began. Once true it stays so to the end of
  /// the opening, for what saw it has left work out, whatever the host says later. Any thread may
  /// ask.
  bool openingAborted() const;

  // Rows of flat inputs (FlatRows.cpp) ----------------------------------------------------------

  void defocus(int y, int x, int r, const DD::Image::ChannelSet& channels, DD::Image::Row& out);
  /// As above, always row by row: the form that the prepared picture is held to.
  void defocusRow(int y, int x, int r, const DD::Image::ChannelSet& channels, DD::Image::Row& out);
  void depthVisualization(int y, int x, int r, const DD::Image::ChannelSet& channels,
                          DD::Image::Row& out);
  void kernelVisualization(int y, int x, int r, const DD::Image::ChannelSet& channels,
                           DD::Image::Row& out);
  /// One channel of a visualization pixel; region 0 is unordered, 1 front, 2 back.
  void getPassValue(const float& coc, const int& region, DD::Image::Channel channel, float* out);
  /// One source pixel onto one output row; see drevin::convole.
  void convole(const int& clampedX, const int& clampedY, const int& outLeft, const int& outY,
               const int& outRight, const int& srcX, const int& srcY, const float& coc,
               const unsigned long& slice, const float& weight, float* pixel,
               std::vector<std::vector<float*>>& colourAcc,
               std::vector<std::vector<float*>>& weightAcc, const DD::Image::ChannelSet& channels,
               float& bloomMatte, float& chromaticMatte);

  // Rows of deep inputs (DeepRows.cpp) ----------------------------------------------------------

  /// Deep defocus of columns [x, r) of row y; mode 0 takes all samples, 1 those in front of the
  /// focal plane, 2 those behind it.
  void deepDefocus(int y, int x, int r, const DD::Image::ChannelSet& channels, DD::Image::Row& out,
                   int mode);
  void deepDepthVisualization(int y, int x, int r, const DD::Image::ChannelSet& channels,
                              DD::Image::Row& out);

  // State, fixed while rows are produced ---------------------------------------------------------

  const DrevinSettings& settings() const { return settings_; }
  const dvChannelFloatBuffer& heroKernel() const { return heroKernel_; }
  const dvKernelBank& kernelBank() const { return kernelBank_; }
  const std::vector<float>& sliceBoundaries() const { return sliceBoundaries_; }
  const DD::Image::ChannelSet& matteChannels() const { return matteChannels_; }
  int padding() const { return padding_; }
  int kernelSize() const { return kernelSize_; }
  const dvPreparedPicture& picture() const { return picture_; }
  /// Deep pixels that went through the merge for the picture.
  std::uint64_t mergedPixels() const { return mergedPixels_; }
  /// Sets the memory of the splats that the next picture may hold at a time, bytes.
  void setBandBytes(std::size_t bytes) { bandBytes_ = bytes; }

 protected:
  void _validate(bool for_real) override;
  void _request(int x, int y, int r, int t, DD::Image::ChannelMask channels, int count) override;
  void _open() override;
  /// Frees what the opening made; the node may open again.
  void _close() override;

 private:
  // Validation.cpp
  void takeCameraValues();
  void validateMattes();
  void useMatte(DD::Image::Channel channel, bool& used);
  void validateDeepInput();
  void growBoundingBox();
  void deriveLensValues();
  void deriveSlices();
  void resetKernels();
  /// Drops all that an opening makes.
  void freeKernels();

  // Requests.cpp
  void requestDeepInput(const DD::Image::Box& box, const DD::Image::ChannelSet& channels,
                        int count);

  // Kernels.cpp
  template <typename Estimate>
  void scanFlatDepth(Estimate& estimate, dvParallel& parallel);
  template <typename Estimate>
  void scanDeepDepth(Estimate& estimate, dvParallel& parallel);
  /// Of the frame, px, without the limit; undefined after an abort.
  int largestDiameter(const dvLens& lens, dvParallel& parallel);

  // Prepared.cpp
  void preparePicture();

  // DeepRows.cpp
  /// The modes that the settings ask for.
  std::vector<dvDeepMode> deepModes() const;
  dvDeepPlan deepPlan(int left, int right, const DD::Image::ChannelSet& channels,
                      const std::vector<dvDeepMode>& modes);
  dvDeepSettings deepSettings(dvDeepMode mode) const;
  void defocusDeepInput(int y, int x, int r, const DD::Image::ChannelSet& channels,
                        DD::Image::Row& out);
  void integrateFrontAndBack(int y, int x, int r, const DD::Image::ChannelSet& channels,
                             DD::Image::Row& out);

  // FlatRows.cpp
  dvSplatFrame splatFrame() const;
  dvMattes mattes() const;
  dvFlatPlan flatPlan(int left, int right, const DD::Image::ChannelSet& channels);
  void passInputThrough(int y, int x, int r, const DD::Image::ChannelSet& channels,
                        DD::Image::Row& out);
  /// The channels that are to be defocused; the others are then the input's.
  DD::Image::ChannelSet passUnprocessed(int y, int x, int r, const DD::Image::ChannelSet& channels,
                                        DD::Image::Row& out);

  dvChannelFloatBuffer heroKernel_;
  DrevinSettings settings_;
  dvKernelBank kernelBank_;
  std::vector<float> sliceBoundaries_;
  bool bloomMatteUsed_ = false;
  bool defocusMatteUsed_ = false;
  bool chromaticMatteUsed_ = false;
  DD::Image::ChannelSet matteChannels_;
  int padding_ = 0;                       ///< px by which requests are grown on every side
  int kernelSize_ = 0;                    ///< px, working maximum kernel diameter
  DD::Image::ChannelSet kernelChannels_;  ///< channels that the kernels were built for
  /// Around all requests of the output since the last validation; none without one.
  std::optional<DD::Image::Box> requestedBox_;
  DD::Image::ChannelSet requestedChannels_;  ///< of the same requests
  dvPreparedPicture picture_;
  std::atomic<std::uint64_t> mergedPixels_{0};
  std::size_t bandBytes_ = dvBandBytes;
  mutable std::atomic<bool> openingAborted_{false};
};

/// Thread body: builds the pairs of bank entries threadIndex, threadIndex + threadCount, ... of a
/// Drevin.
void initializeKernelsThreaded(unsigned threadIndex, unsigned threadCount, void* node);

}  // namespace drevin
