#pragma once

/// A scene made a box at a time by the engine, with no host in between.

#include "defocus/ImagingFrame.h"
#include "engine/FrameMaker.h"

namespace drevin::test {

/// Source rows of a box, bottom first; null where nothing is known of a row.
struct EngineLines {
  dvFrameBox box;
  std::vector<dvSplatLine> rows;
  dvSplatLines places;
};

class EngineFrame {
 public:
  /// `scene` must outlive the frame; an output type that splats.
  explicit EngineFrame(const LiteralScene& scene);

  const ImagingFrame& imaging() const { return imaging_; }
  const dvLineSettings& settings() const { return settings_; }
  const std::vector<int>& channels() const { return settings_.channels; }
  int padding() const { return imaging_.estimate().padding; }

  EngineLines lines(const dvFrameBox& box) const;
  /// The channels over the box of the lines.
  dvFramePlanes make(const EngineLines& lines, dvParallel& parallel,
                     dvTileChoice choice = dvTileChoice::ByCost) const;
  /// The same by two workers.
  dvFramePlanes make(const EngineLines& lines, dvTileChoice choice = dvTileChoice::ByCost) const;

 private:
  ImagingFrame imaging_;
  dvLineSettings settings_;
};

/// The format's box.
dvFrameBox formatBox(const LiteralScene& scene);

/// Compares rows of the box with those of the row code. Where those have no coverage, which an
/// alpha of 1 in the whole picture shows, all channels must be 0 exactly.
void expectRowsOfTheRowCode(const EngineFrame& frame, const dvFramePlanes& planes,
                            const std::vector<int>& rows);

/// Compares what two pictures have in common.
void expectAgreement(const dvFramePlanes& a, const dvFramePlanes& b);

/// Whether both hold the same bits.
bool sameBits(const dvFramePlanes& a, const dvFramePlanes& b);

}  // namespace drevin::test
