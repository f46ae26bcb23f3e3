#pragma once

#include <string>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// The order in which people look for names: letters before their accents, accents before capitals
/// (the Unicode collation algorithm, UTS #10, with its root table). Negative when `left` comes
/// first, 0 for names that it does not tell apart.
ORVEL_EXPORT int CompareForDisplay(const std::u16string& left, const std::u16string& right);

}  // namespace teskcore::utility
