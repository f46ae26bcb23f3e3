#pragma once

#include <string>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// A constant text kept once for the life of the program: equal texts share one string, so
/// comparing two of them compares addresses.
class ORVEL_EXPORT ImmutableString {
 public:
  /// The one string of this text.
  static ImmutableString CreateStatic(const std::string& text);

  /// The text; lives as long as the program.
  const std::string& AsUTF8String() const { return *text_; }

  /// Whether the texts are equal.
  friend bool operator==(ImmutableString left, ImmutableString right) {
    return left.text_ == right.text_;
  }

  /// The same against a text that is not kept.
  friend bool operator==(ImmutableString left, const std::string& right) {
    return *left.text_ == right;
  }

 private:
  explicit ImmutableString(const std::string* text) : text_(text) {}
  const std::string* text_;
};

}  // namespace teskcore::utility

namespace orvel {
using teskcore::utility::ImmutableString;
}  // namespace orvel
