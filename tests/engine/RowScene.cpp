#include "engine/RowScene.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "kernel/ApertureShape.h"
#include "kernel/HeroKernel.h"
#include "support/Draw.h"

namespace drevin::test {

namespace {

constexpr int channel = 1;

dvChannelFloatBuffer discHero() {
  dvApertureShape shape;
  shape.softness = 0.1F;
  dvHeroSizing sizing;
  sizing.side = 256;
  dvChannelFloatBuffer hero;
  makeHeroKernel(hero, shape, sizing, {channel}, {});
  return hero;
}

float drawnValue(KernelKind kind, int side, int row, int column, Draw& draw) {
  const float mean = 1.0F / static_cast<float>(side * side);
  const int edge = std::min({row, column, side - 1 - row, side - 1 - column});
  switch (kind) {
    case KernelKind::Random:
      return draw.chance(0.2) ? 0.0F : mean * draw.real(-0.5F, 2.0F);
    case KernelKind::BlankEdges:
      if (row == 0 || column == 0) return 0.0F;
      return edge <= 1 ? -0.1F * mean * draw.real(0.0F, 1.0F) : mean;
    case KernelKind::SeveralSteps:
      return mean * static_cast<float>(1 + column / 21 % 3);
    default:
      return mean;
  }
}

void drawKernel(dvChannelFloatBuffer& entry, KernelKind kind, int side, Draw& draw) {
  entry.resize(side, {channel});
  float* value = entry.plane(channel);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column)
      *value++ = drawnValue(kind, side, row, column, draw);
  }
}

dvSplatRecord drawRecord(const SceneRange& range, Draw& draw) {
  dvSplatRecord record;
  record.radius = draw.whole(0, range.largestRadius);
  const int reach = record.radius + 3;
  record.x = draw.whole(range.left - reach, range.right + reach);
  const float near = draw.real(0.05F, 1.0F);
  const int shares = record.radius == range.largestRadius ? 0 : draw.whole(0, 3);
  record.near = shares == 1 ? 0.0F : near;
  record.far = shares == 0 ? 0.0F : 1.0F - near;
  return record;
}

dvSplatRow drawRow(const SceneRange& range, Draw& draw) {
  dvSplatRow row;
  for (int i = 0; i < range.records; ++i)
    row.records.push_back(drawRecord(range, draw));
  std::sort(row.records.begin(), row.records.end(),
            [](const dvSplatRecord& a, const dvSplatRecord& b) { return a.x < b.x; });
  for (int i = 0; i < range.records * range.channels; ++i) {
    const float value = draw.real(-0.1F, 1.0F);
    row.values.push_back(draw.chance(0.05) ? value * range.brightest : value);
  }
  return row;
}

double kernelValue(const dvKernelBank& bank, int radius, int dy, int dx) {
  if (std::abs(dx) > radius || std::abs(dy) > radius) return 0.0;
  const dvChannelFloatBuffer& kernel = bank[2 * static_cast<std::size_t>(radius) + 1];
  return static_cast<double>(kernel.plane(channel)[(radius - dy) * kernel.width + radius + dx]);
}

void addLiteral(const RowScene& scene, const dvSplatRecord& record, const float* values, int dy,
                LiteralSums& sums) {
  for (int column = scene.left; column < scene.right; ++column) {
    const int dx = column - record.x;
    double kernel = 0.0;
    if (record.near > 0.0F)
      kernel += static_cast<double>(record.near) * kernelValue(scene.bank, record.radius, dy, dx);
    if (record.far > 0.0F)
      kernel +=
          static_cast<double>(record.far) * kernelValue(scene.bank, record.radius + 1, dy, dx);
    for (int p = 0; p <= scene.channels; ++p) {
      const double product = p == scene.channels ? kernel : kernel * static_cast<double>(values[p]);
      LiteralSum& sum =
          sums[static_cast<std::size_t>(p)][static_cast<std::size_t>(column - scene.left)];
      sum.value += product;
      sum.magnitude += std::fabs(product);
    }
  }
}

}  // namespace

dvKernelBank kernelBank(KernelKind kind, int largestRadius, unsigned seed) {
  Draw draw(seed);
  dvKernelBank bank(static_cast<std::size_t>(2 * largestRadius + 2));
  const dvChannelFloatBuffer hero = kind == KernelKind::Disc ? discHero() : dvChannelFloatBuffer{};
  for (int index = 0; index < static_cast<int>(bank.size()); ++index) {
    dvChannelFloatBuffer& entry = bank[static_cast<std::size_t>(index)];
    if (kind == KernelKind::Disc) {
      initializeBankEntry(entry, index, hero, {channel});
    } else {
      drawKernel(entry, kind, kernelSide(index), draw);
    }
  }
  return bank;
}

RowScene randomScene(KernelKind kind, const SceneRange& range, unsigned seed) {
  Draw draw(seed);
  RowScene scene{
      kernelBank(kind, range.largestRadius, seed), range.channels, range.left, range.right, {}};
  for (int dy = -range.farthest; dy <= range.farthest; ++dy)
    scene.rows.push_back({dy, drawRow(range, draw)});
  return scene;
}

LiteralSums literalSums(const RowScene& scene) {
  const auto columns = static_cast<std::size_t>(std::max(0, scene.right - scene.left));
  LiteralSums sums(static_cast<std::size_t>(scene.channels + 1), std::vector<LiteralSum>(columns));
  for (const SceneRow& row : scene.rows) {
    const float* values = row.splats.values.data();
    for (const dvSplatRecord& record : row.splats.records) {
      addLiteral(scene, record, values, row.dy, sums);
      values += scene.channels;
    }
  }
  return sums;
}

std::vector<std::vector<double>> rowSums(const RowScene& scene, const RowWay& way) {
  const dvKernelTable kernels(scene.bank, channel);
  dvRowSums sums(scene.channels, scene.left, scene.right, way.shape, way.order);
  for (const SceneRow& row : scene.rows) {
    if (way.ready) {
      sums.add(dvReadyRow(row.splats, scene.left), row.dy, kernels);
    } else {
      const dvRowReach reach(row.splats);
      sums.add(row.splats, 0, row.splats.records.size(), row.dy, kernels,
               way.knowsReach ? &reach : nullptr);
    }
    sums.endSourceRow();
  }
  sums.finish();
  std::vector<std::vector<double>> planes(static_cast<std::size_t>(scene.channels + 1));
  for (int p = 0; p <= scene.channels; ++p) {
    std::vector<double>& plane = planes[static_cast<std::size_t>(p)];
    plane.resize(static_cast<std::size_t>(std::max(0, scene.right - scene.left)));
    sums.store(p, plane.data());
  }
  return planes;
}

double worstError(const std::vector<std::vector<double>>& sums, const LiteralSums& literal) {
  double worst = 0.0;
  for (std::size_t p = 0; p < literal.size(); ++p) {
    for (std::size_t i = 0; i < literal[p].size(); ++i) {
      const double error = std::fabs(sums[p][i] - literal[p][i].value);
      if (error == 0.0) continue;
      const double relative = error / literal[p][i].magnitude;
      worst = relative <= worst ? worst : relative;
      if (!std::isfinite(relative)) return std::numeric_limits<double>::infinity();
    }
  }
  return worst;
}

}  // namespace drevin::test
