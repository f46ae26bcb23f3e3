#include "apps/orvel/shell_words.h"

namespace orvelcli {

bool SplitWords(const std::string& line, std::vector<std::string>& words) {
  words.clear();
  bool isInWord = false;
  char quote = '\0';
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const bool isBlank = c == ' ' || c == '\t' || c == '\r';
    if (quote == '\0' && isBlank) {
      isInWord = false;
      continue;
    }
    if (!isInWord) words.emplace_back();
    isInWord = true;
    if (c == quote) {
      quote = '\0';
    } else if (quote == '\0' && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
      words.back() += line[++i];
    } else {
      words.back() += c;
    }
  }
  return quote == '\0';
}

}  // namespace orvelcli
