#pragma once

#include <compare>
#include <string>

#include <boost/uuid/uuid.hpp>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// A 128-bit identifier. The null value (all zero) means "none" or "not set".
class ORVEL_EXPORT Guid {
 public:
  /// The null value.
  Guid() : bytes_{} {}

  /// Reads 8-4-4-4-12 hexadecimal digits separated by dashes, in either case; any other text gives
  /// the null value.
  explicit Guid(const std::string& text);

  /// A fresh random identifier (RFC 4122, version 4).
  static Guid CreateUnique();

  /// The text form, in lower case: "cea63332-1adc-44a9-a6eb-5490f965859b".
  std::string AsUTF8String() const;

  /// Whether it is the null value.
  bool IsNull() const { return bytes_.is_nil(); }

  /// Whether all bytes are equal.
  friend bool operator==(const Guid& left, const Guid& right) {
    return left.bytes_ == right.bytes_;
  }

  /// The order of the bytes, and of the text forms.
  friend std::strong_ordering operator<=>(const Guid& left, const Guid& right) {
    if (left.bytes_ == right.bytes_) return std::strong_ordering::equal;
    return left.bytes_ < right.bytes_ ? std::strong_ordering::less : std::strong_ordering::greater;
  }

 private:
  boost::uuids::uuid bytes_;
};

}  // namespace teskcore::utility

namespace orvel {
using teskcore::utility::Guid;
}  // namespace orvel
