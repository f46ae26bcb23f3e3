#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvelhost {

/// Counts levels in dB, so that memory does not grow with their number.
class LevelHistogram {
 public:
  /// Tells levels apart that lie `step` dB from each other; those outside the range count as its
  /// ends.
  LevelHistogram(double lowest, double highest, double step);

  void Add(double decibels);
  bool IsEmpty() const { return total_ == 0; }

  /// The level below which lies `part` (0..1) of those that are at least `gate`; `gate` when there
  /// are none.
  double Quantile(double part, double gate) const;
  double Quantile(double part) const { return Quantile(part, lowest_); }

 private:
  std::size_t CellOf(double decibels) const;

  double lowest_;
  double step_;
  std::vector<std::uint32_t> cells_;
  std::uint64_t total_ = 0;
};

}  // namespace orvelhost
