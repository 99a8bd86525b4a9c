#include "deep/DeepRecords.h"

#include "defocus/CorrectiveSlices.h"
#include "defocus/FloatRules.h"

namespace drevin {

namespace {

/// Coverage at which nothing behind can be seen.
constexpr float leastRoom = 1e-6F;

bool takes(dvDeepMode mode, dvFocusRegion region) {
  return mode == dvDeepMode::Both || static_cast<int>(mode) == static_cast<int>(region);
}

}  // namespace

dvDeepBlur deepBlur(float depth, const dvDeepSettings& settings) {
  const dvLens& lens = settings.lens;
  const float z = clampToFocusRegion(depth, lens);
  dvDeepBlur blur;
  blur.slice = sliceIndex(z, settings.slices, settings.sliceStarts);
  blur.region = z < lens.focalPlane ? dvFocusRegion::Front : dvFocusRegion::Back;
  const float coc =
      isInfinitelyFar(z) ? static_cast<float>(lens.kernelSize) : unscaledCoc(z, blur.region, lens);
  blur.coc = coc * lens.uiContextScale;
  return blur;
}

dvDeepRecordRow::dvDeepRecordRow(const dvDeepLayout& layout,
                                 const std::vector<std::size_t>& splatted)
    : layout_(layout), splatted_(splatted) {}

void dvDeepRecordRow::addPixel(const dvDeepSamples& samples, const std::vector<dvDeepPiece>& pieces,
                               const dvDeepSettings& settings) {
  const auto alphaPlace = static_cast<std::size_t>(layout_.alpha);
  float coverage = 0.0F;
  for (const dvDeepPiece& piece : pieces) {
    const dvDeepBlur blur = deepBlur(settings.useBackDepth ? piece.back : piece.front, settings);
    if (!takes(settings.mode, blur.region)) continue;
    const float alpha = pieceValue(layout_, samples, piece, alphaPlace);
    const float weight = (1.0F - coverage) * alpha;
    addPiece(samples, piece, blur, alpha, weight);
    coverage += weight;
    if (1.0F - coverage < leastRoom) break;
  }
  firstRecord_.push_back(records_.size());
  background_.push_back(pieces.empty() || coverage < 1.0F ? 1.0F - coverage : 0.0F);
}

void dvDeepRecordRow::addHole() {
  firstRecord_.push_back(records_.size());
  background_.push_back(0.0F);
}

void dvDeepRecordRow::addPiece(const dvDeepSamples& samples, const dvDeepPiece& piece,
                               const dvDeepBlur& blur, float alpha, float weight) {
  // The splat skips weights of 0 or less; a NaN weight it does not.
  const bool splatted = !(weight <= 0.0F) && blur.slice != dvNoSlice;
  if (!splatted) return;
  records_.push_back({blur.coc, weight, blur.slice});
  for (const std::size_t place : splatted_) {
    values_.push_back(pieceValue(layout_, samples, piece, place) / alpha);
  }
}

}  // namespace drevin
