#pragma once

/// Neighbours among a tile's splats that are transformed with the same kernels.

#include <cstddef>
#include <vector>

#include "engine/TileLights.h"

namespace drevin {

/// Records [begin, end) of a row, with shares of the same kernels, none of them a light.
struct dvTileRun {
  const dvGroupRows::Row* row;
  std::size_t begin;
  std::size_t end;

  const dvSplatRow& splats() const { return row->splats->row; }
  const dvSplatRecord& first() const { return splats().records[begin]; }
};

/// Whether two splats have shares of the same kernels.
inline bool isAlike(const dvSplatRecord& a, const dvSplatRecord& b) {
  return a.radius == b.radius && (a.near > 0.0F) == (b.near > 0.0F) &&
         (a.far > 0.0F) == (b.far > 0.0F);
}

/// Calls visit(run) for all splats of the parts but lights, run by run, each as long as it can be.
/// Returns whether there are lights.
template <typename Visit>
bool forEachRun(const std::vector<dvTilePart>& parts, const dvTileLights& lights,
                const Visit& visit) {
  bool anyLight = false;
  for (const dvTilePart& part : parts) {
    const dvSplatRow& row = part.splats();
    const std::size_t stride = row.stride();
    dvTileRun run{part.row, part.records.begin, part.records.begin};
    const auto end = [&](std::size_t next) {
      if (run.begin < run.end) visit(run);
      run.begin = run.end = next;
    };
    for (std::size_t r = part.records.begin; r < part.records.end; ++r) {
      const dvSplatRecord& record = row.records[r];
      if (lights.isLight(record, row.values.data() + r * stride)) {
        anyLight = true;
        end(r + 1);
        continue;
      }
      if (run.begin < run.end && !isAlike(row.records[run.begin], record)) end(r);
      run.end = r + 1;
    }
    end(part.records.end);
  }
  return anyLight;
}

}  // namespace drevin
