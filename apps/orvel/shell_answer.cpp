#include "apps/orvel/shell_answer.h"

namespace orvelcli {

std::string Join(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

}  // namespace orvelcli
