#pragma once

#include <concepts>
#include <initializer_list>
#include <string>

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace teskcore::config {

/// The host's translation tables. Until a host brings its own, every text is shown by its default.
class ORVEL_EXPORT Localizer {
 public:
  /// Stores the translation of a path such as "orvel/Sections/Volume" in `text`; false when there
  /// is none.
  using Lookup = boost::function<bool(const std::string& path, std::u16string& text)>;

  /// The one instance; it lives as long as the program.
  static Localizer& Get();

  /// Replaces the tables; an empty function takes them away.
  void SetLookup(const Lookup& lookup) { lookup_ = lookup; }

  /// Asks the host's tables; false when there are none.
  bool Find(const std::string& path, std::u16string& text) const {
    const Lookup lookup = lookup_;  // it may replace itself
    return lookup && lookup(path, text);
  }

 private:
  Localizer() = default;
  Lookup lookup_;
};

}  // namespace teskcore::config

namespace teskcore {

/// See `ZString`.
ORVEL_EXPORT std::u16string Localize(const std::string& key,
                                     std::initializer_list<std::u16string> arguments);

/// The text to show for a key "$$$/path=default text": the translation of the path, else the
/// default text. In it "@0" to "@9" become the arguments, each as it stands (an argument's own "@1"
/// is not replaced again); a placeholder without an argument stays. "^Q" becomes a quotation mark,
/// "^n" a line feed, "^t" a tab and "^^" a circumflex. A key that does not begin with "$$$/" is a
/// plain text, such as the name that a person gave to a preset, and is shown as it stands.
template <std::convertible_to<std::u16string>... Arguments>
requires(sizeof...(Arguments) <= 10) std::u16string
    ZString(const std::string& key, const Arguments&... arguments) {
  return Localize(key, {std::u16string(arguments)...});
}

}  // namespace teskcore

namespace orvel {
using teskcore::ZString;
using teskcore::config::Localizer;
}  // namespace orvel
