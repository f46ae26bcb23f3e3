#pragma once

#include <string>
#include <vector>

namespace orvelcli {

/// Splits a line at blanks. Quotes of both kinds keep blanks, and a backslash any character outside
/// of single quotes. False for a quote that does not end.
bool SplitWords(const std::string& line, std::vector<std::string>& words);

}  // namespace orvelcli
