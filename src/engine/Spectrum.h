#pragma once

/// Spectra of kernels: what the Fourier transform of a plane is multiplied by to convolve it.

#include <atomic>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

#include "engine/CutKernels.h"
#include "engine/FourierBuffer.h"
#include "engine/FourierPlan.h"
#include "engine/KernelTable.h"

namespace drevin {

/// The spectrum of the kernel of one radius R at one length N, as scattering needs it:
///
///   F(u, v) = 1 / N^2 * sum over (x, y) of  K[R - y][R + x] * exp(-2 pi i (u x + v y) / N)
///
///   K  kernel, rows against the image's rows     x, y  image columns and rows from the splat's
///                                                      centre, -R to R; cut rows left out
///
/// The 1 / N^2 makes up for what a forward and a backward transform multiply by. Of each pair of
/// conjugate halves one is kept: 4 * N * (N + 32) bytes at most.
/// Where N < 2R + 1 the kernel overlaps itself cyclically.
class dvKernelSpectrum {
 public:
  /// `side` is a length that transformSide gives, the kernel's radius one that the table has.
  dvKernelSpectrum(const dvKernelTable& table, int side, const dvCutKernel& kernel);

  const dvFourierPlan& plan() const { return *plan_; }
  std::size_t bytes() const { return values_.size() * sizeof(float); }
  /// For the strip of one block of vertical frequencies.
  dvStripFactors factors(int block) const;

 private:
  const dvFourierPlan* plan_;
  std::vector<int> places_;  ///< by block, of its strip or its partner's among those kept
  dvFourierBuffer values_;
};

/// The spectra of one table, each made when it is first asked for.
class dvSpectrumCache {
 public:
  /// The table must outlive the cache.
  explicit dvSpectrumCache(const dvKernelTable& table);

  /// The spectrum of a kernel of the table at a length that transformSide gives. Safe from any
  /// thread: the first that asks makes it, and who asks for the same waits. Stays until the
  /// cache is cleared.
  const dvKernelSpectrum& spectrum(int side, const dvCutKernel& kernel);

  /// Memory of the spectra that are kept.
  std::size_t bytes() const { return bytes_; }
  /// Forgets all spectra; nobody must be using one.
  void clear();

 private:
  struct Entry {
    std::once_flag once;
    std::unique_ptr<const dvKernelSpectrum> spectrum;
  };

  /// Length, radius, cut.
  using Key = std::tuple<int, int, int>;
  Entry& entry(const Key& key);

  const dvKernelTable& table_;
  std::mutex mutex_;
  std::map<Key, Entry> entries_;
  std::atomic<std::size_t> bytes_{0};
};

}  // namespace drevin
