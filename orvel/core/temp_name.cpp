#include "orvel/core/temp_name.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <string_view>

#include <sys/types.h>
#include <unistd.h>

#include "orvel/core/guid.h"
#include "orvel/core/text.h"

namespace teskcore::filesupport {
namespace {

constexpr std::string_view kPrefix = ".save-";
constexpr std::string_view kExtension = ".tmp";

}  // namespace

std::u16string MakeTempName() {
  return utility::UTF8to16(std::string(kPrefix) + std::to_string(getpid()) + "-" +
                           utility::Guid::CreateUnique().AsUTF8String() + std::string(kExtension));
}

bool IsAbandonedTempName(const std::u16string& name) {
  const std::string text = utility::UTF16to8(name);
  if (!text.starts_with(kPrefix) || !text.ends_with(kExtension)) return false;
  const char* const end = text.data() + text.size();
  long process = 0;
  const auto [dash, error] = std::from_chars(text.data() + kPrefix.size(), end, process);
  if (error != std::errc() || *dash != '-') return false;
  const utility::Guid guid(std::string(dash + 1, end - kExtension.size()));
  return !guid.IsNull() && !IsOtherProcess(process);
}

bool IsOtherProcess(long number) {
  const auto process = static_cast<pid_t>(number);
  if (process <= 0 || process == getpid()) return false;
  return kill(process, 0) == 0 || errno == EPERM;
}

}  // namespace teskcore::filesupport
