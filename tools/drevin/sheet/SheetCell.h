#pragma once

/// One picture of a sheet, from its settings to its small size.

#include <functional>
#include <memory>

#include "render/FrameJob.h"
#include "sheet/SheetCanvas.h"
#include "sheet/SheetMessages.h"

namespace drevintool {

/// What all pictures of a sheet share.
struct SheetShare {
  RenderArguments arguments;  ///< of the frame that is shown
  FrameTask task;
  std::shared_ptr<const InputPictures> pictures;
  PixelSize whole;  ///< of the frame, or of its region
  PixelSize small;  ///< what that becomes; other sizes by the same factors
};

class SheetCell : public FrameJob {
 public:
  /// `keep` is given the small picture; `messages` must outlive this.
  SheetCell(const SheetShare& sheet, const FrameShare& share, std::size_t picture, unsigned threads,
            FrameProgress progress, SheetMessages& messages,
            std::function<void(SmallPicture)> keep);

 protected:
  std::optional<std::uint64_t> deliver(const OutputPicture& result) override;
  void tellWarning(const std::string& text) override;
  void tellNote(const std::string& text) override;
  void tellUnused(const std::string& text) override;

 private:
  const SheetShare& sheet_;
  std::size_t picture_;
  SheetMessages& messages_;
  std::function<void(SmallPicture)> keep_;
};

}  // namespace drevintool
