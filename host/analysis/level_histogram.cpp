#include "host/analysis/level_histogram.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvelhost {

LevelHistogram::LevelHistogram(double lowest, double highest, double step)
    : lowest_(lowest),
      step_(step),
      cells_(static_cast<std::size_t>(std::lround((highest - lowest) / step))) {}

std::size_t LevelHistogram::CellOf(double decibels) const {
  return static_cast<std::size_t>(
      std::clamp((decibels - lowest_) / step_, 0.0, static_cast<double>(cells_.size() - 1)));
}

void LevelHistogram::Add(double decibels) {
  ++cells_[CellOf(decibels)];
  ++total_;
}

double LevelHistogram::Quantile(double part, double gate) const {
  std::size_t cell = CellOf(gate);
  double rank =
      part * std::accumulate(cells_.begin() + static_cast<std::ptrdiff_t>(cell), cells_.end(), 0.0);
  if (rank <= 0.0) {
    return gate;
  }
  while (rank > cells_[cell]) {
    rank -= cells_[cell++];
  }
  return lowest_ + (static_cast<double>(cell) + rank / cells_[cell]) * step_;
}

}  // namespace orvelhost
