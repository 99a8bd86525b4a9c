#include "engine/RowCode.h"
#include "engine/RowVector.h"

namespace drevin {
namespace DREVIN_SIMD_LEVEL {

namespace {

/// The sums of a row and the planes among them that are added to.
struct Planes {
  float* sums;
  ptrdiff_t cellFloats;
};

template <int Values, bool Weight>
void addColumns(const dvRowSplat& splat, const Vector (&values)[Values], int begin, int end,
                const Planes& planes) {
  const Vector nearShare = filled(splat.nearShare);
  const Vector farShare = filled(splat.farShare);
  for (int column = begin & -lanes; column < end; column += lanes) {
    const Vector kernel = nearShare * loadLoose(splat.near + (column - splat.x)) +
                          farShare * loadLoose(splat.far + (column - splat.x));
    float* place =
        planes.sums + column / dvCellColumns * planes.cellFloats + column % dvCellColumns;
    for (int p = 0; p < Values; ++p)
      vectorAt(place + p * dvCellColumns) += kernel * values[p];
    if (Weight) vectorAt(place + Values * dvCellColumns) += kernel;
  }
}

/// `Values` planes, from plane `first`; the weight plane behind them too where it is asked for.
template <int Values, bool Weight>
void scatter(const dvRowSplat* splats, int count, int first, const Planes& planes) {
  for (const dvRowSplat* splat = splats; splat != splats + count; ++splat) {
    Vector values[Values];
    for (int p = 0; p < Values; ++p)
      values[p] = filled(splat->values[first + p]);
    addColumns<Values, Weight>(*splat, values, splat->begin, splat->innerBegin, planes);
    if (splat->innerEnd < splat->end)
      addColumns<Values, Weight>(*splat, values, splat->innerEnd, splat->end, planes);
  }
}

}  // namespace

void scatterSplats(const dvRowSplat* splats, int count, int channels, float* sums) {
  const ptrdiff_t cellFloats = static_cast<ptrdiff_t>(channels + 1) * dvCellColumns;
  int first = 0;
  for (; channels - first > 6; first += 4)
    scatter<4, false>(splats, count, first, {sums + first * dvCellColumns, cellFloats});
  const Planes planes{sums + first * dvCellColumns, cellFloats};
  switch (channels - first) {
    case 1:
      return scatter<1, true>(splats, count, first, planes);
    case 2:
      return scatter<2, true>(splats, count, first, planes);
    case 3:
      return scatter<3, true>(splats, count, first, planes);
    case 4:
      return scatter<4, true>(splats, count, first, planes);
    case 5:
      return scatter<5, true>(splats, count, first, planes);
    default:
      return scatter<6, true>(splats, count, first, planes);
  }
}

void scatterEdges(const dvRowSplat* splats, int count, int channels, double* edges) {
  const ptrdiff_t cellEdges = channels + dvEdgeExtras;
  for (const dvRowSplat* splat = splats; splat != splats + count; ++splat) {
    if (splat->innerBegin == splat->innerEnd) continue;
    double* begin = edges + splat->innerBegin / dvCellColumns * cellEdges;
    double* end = edges + splat->innerEnd / dvCellColumns * cellEdges;
    const auto inner = static_cast<double>(splat->inner);
    for (int p = 0; p < channels; ++p) {
      const double product = inner * static_cast<double>(splat->values[p]);
      begin[p] += product;
      end[p] -= product;
    }
    begin[channels] += inner;
    end[channels] -= inner;
    begin[channels + 1] += 1.0;
    end[channels + 1] -= 1.0;
  }
}

void emptySums(float* sums, double* totals, ptrdiff_t count) {
  for (ptrdiff_t i = 0; i < count; ++i) {
    totals[i] += static_cast<double>(sums[i]);
    sums[i] = 0.0F;
  }
}

}  // namespace DREVIN_SIMD_LEVEL
}  // namespace drevin
