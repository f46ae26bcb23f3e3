#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "orvel/core/export.h"

namespace teskcore::proplist {

/// A tree of named, typed values, itself a value: copies are independent. Entries stand in key
/// order. It holds the configuration of a section.
class ORVEL_EXPORT PropList {
 public:
  /// A held value. A child tree is shared between copies and never changed in place.
  using Value =
      std::variant<float, std::uint32_t, std::vector<float>, std::shared_ptr<const PropList>>;

  /// Over (key, value) in the order of the keys.
  using const_iterator = std::map<std::string, Value>::const_iterator;

  /// Tells whether `key` holds a value of that type. Without one, a number and a child tree are
  /// left as the caller set them, so that a default survives, and an array comes back empty.
  /// @{
  bool GetValue(const std::string& key, float& value) const;
  bool GetValue(const std::string& key, std::uint32_t& value) const;
  bool GetValue(const std::string& key, std::vector<float>& value) const;
  bool GetValue(const std::string& key, PropList& child) const;
  /// @}

  /// Replaces what `key` held, of whatever type.
  /// @{
  void SetValue(const std::string& key, float value);
  void SetValue(const std::string& key, std::uint32_t value);
  void SetValue(const std::string& key, std::vector<float> value);
  void SetValue(const std::string& key, const PropList& child);
  /// @}

  /// Removes `key`; a missing one is no error.
  void RemoveValue(const std::string& key);

  /// Whether there is no entry.
  bool IsEmpty() const { return values_.empty(); }

  /// The number of entries, those of child trees not counted.
  std::size_t GetCount() const { return values_.size(); }

  /// The first entry.
  const_iterator begin() const { return values_.begin(); }

  /// Behind the last entry.
  const_iterator end() const { return values_.end(); }

  /// Deep comparison of names, types and values; a NaN equals nothing.
  friend ORVEL_EXPORT bool operator==(const PropList& left, const PropList& right);

 private:
  std::map<std::string, Value> values_;
};

}  // namespace teskcore::proplist

namespace orvel {
using teskcore::proplist::PropList;
}  // namespace orvel
