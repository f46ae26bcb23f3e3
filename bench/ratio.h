#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace bench {

/// Of an odd number of values.
inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Prints a row of the table that script/bench shows: our time over the peer's, and what it is
/// promised to be at the most (0: nothing).
inline void PrintRatio(const char* what, const char* peer, double ratio, double promised) {
  std::printf("ratio: %-44s %-30s %6.2f", what, peer, ratio);
  if (promised > 0.0) std::printf(" %9.2f", promised);
  std::printf("\n");
}

}  // namespace bench
