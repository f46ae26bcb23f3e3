#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvelhost {

/// Cells in a row, each the sum of the same number of items that were added one after the other
/// (`Cell::Merge`). A row that is full merges neighbours, so that its memory does not grow with the
/// number of items, and its ends never move.
template <typename Cell>
class MergingRow {
 public:
  static constexpr std::size_t kCapacity = 2048;

  void Add(const Cell& item) {
    if (filled_ == perCell_) {
      filled_ = 0;
      if (cells_.size() == kCapacity) {
        MergeNeighbours();
      }
    }
    if (filled_++ == 0) {
      cells_.push_back(item);
    } else {
      cells_.back().Merge(item);
    }
  }

  /// More than half the capacity once as many items were added; the last may hold fewer items.
  const std::vector<Cell>& Cells() const { return cells_; }
  std::int64_t ItemsPerCell() const { return perCell_; }

 private:
  void MergeNeighbours() {
    for (std::size_t index = 0; index < kCapacity / 2; ++index) {
      cells_[index] = cells_[2 * index];
      cells_[index].Merge(cells_[2 * index + 1]);
    }
    cells_.resize(kCapacity / 2);
    perCell_ *= 2;
  }

  std::vector<Cell> cells_;
  std::int64_t perCell_ = 1;
  std::int64_t filled_ = 0;
};

}  // namespace orvelhost
