#include "orvel/core/collation.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace teskcore::utility {
namespace {

// Never freed: names are compared as long as anything lives. Null when ICU comes without its data.
const icu::Collator* RootCollator() {
  static const icu::Collator* const collator = [] {
    UErrorCode error = U_ZERO_ERROR;
    return icu::Collator::createInstance(icu::Locale::getRoot(), error);
  }();
  return collator;
}

}  // namespace

int CompareForDisplay(const std::u16string& left, const std::u16string& right) {
  const icu::Collator* collator = RootCollator();
  if (collator == nullptr) return left.compare(right);
  UErrorCode error = U_ZERO_ERROR;
  return collator->compare(left.data(), static_cast<std::int32_t>(left.size()), right.data(),
                           static_cast<std::int32_t>(right.size()), error);
}

}  // namespace teskcore::utility
