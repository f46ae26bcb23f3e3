#include "orvel/core/guid.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace teskcore::utility {
namespace {

// The generator also takes braces and text without dashes, and throws on the rest: only the one
// form is let through.
bool HasGuidForm(const std::string& text) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  return std::equal(text.begin(), text.end(), kForm.begin(), kForm.end(), [](char c, char form) {
    return form == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
  });
}

boost::uuids::uuid StringToGUID(const std::string& text) {
  return HasGuidForm(text) ? boost::uuids::string_generator()(text) : boost::uuids::uuid{};
}

}  // namespace

Guid::Guid(const std::string& text) : bytes_(StringToGUID(text)) {}

Guid Guid::CreateUnique() {
  Guid guid;
  guid.bytes_ = boost::uuids::random_generator()();
  return guid;
}

std::string Guid::AsUTF8String() const { return boost::uuids::to_string(bytes_); }

}  // namespace teskcore::utility
