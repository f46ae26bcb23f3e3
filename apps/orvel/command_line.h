#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvelcli {

/// A command line that makes no sense; `what()` is one line that says why.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One option of a command. All commands have "help" (h), "json" (j) and "quiet" (q) besides.
struct OptionSyntax {
  const char* name;
  char letter;  ///< or 0
  bool takesValue;
};

/// The words and options that were given to a command, in any order; "--" ends the options.
class CommandLine {
 public:
  /// `argv` begins with the command's name. Raises UsageError for an unknown option, and one that
  /// lacks its value, has an empty one, or one too many.
  CommandLine(const std::vector<OptionSyntax>& options, int argc, char** argv);

  const std::vector<std::string>& Words() const { return words_; }
  bool Has(const std::string& option) const { return values_.contains(option); }

  /// All values of an option, in their order; and the one, empty when it was not given. It raises
  /// UsageError when there are several.
  std::vector<std::string> Values(const std::string& option) const;
  std::string Value(const std::string& option) const;

  bool AsJSON() const { return Has("json"); }
  bool IsQuiet() const { return Has("quiet"); }

 private:
  std::vector<std::string> words_;
  std::map<std::string, std::vector<std::string>> values_;
};

}  // namespace orvelcli
