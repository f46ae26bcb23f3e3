#include "orvel/core/guid.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace teskcore::utility {
namespace {

// The value of a hexadecimal digit, or -1.
int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Boost's generator takes more forms than this one, and several times as long, which a reader of
// ten thousand presets feels.
boost::uuids::uuid StringToGUID(const std::string& text) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != kForm.size()) return {};
  boost::uuids::uuid bytes{};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] == '-') {
      if (text[i] != '-') return {};
      continue;
    }
    const int digit = DigitValue(text[i]);
    if (digit < 0) return {};
    auto& byte = bytes.data[digits++ / 2];
    byte = static_cast<std::uint8_t>(byte * 16 + digit);
  }
  return bytes;
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
