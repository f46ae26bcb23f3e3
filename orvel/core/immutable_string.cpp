#include "orvel/core/immutable_string.h"

#include <mutex>
#include <set>

namespace teskcore::utility {

ImmutableString ImmutableString::CreateStatic(const std::string& text) {
  // Never freed: interned texts are used from static objects of any lifetime.
  static std::mutex mutex;
  static auto& texts = *new std::set<std::string>;
  const std::lock_guard lock(mutex);
  return ImmutableString(&*texts.insert(text).first);
}

}  // namespace teskcore::utility
