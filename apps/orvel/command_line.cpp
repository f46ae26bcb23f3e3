#include "apps/orvel/command_line.h"

#include <getopt.h>

namespace orvelcli {
namespace {

constexpr OptionSyntax kCommonOptions[] = {
    {"help", 'h', false}, {"json", 'j', false}, {"quiet", 'q', false}};

constexpr int kFirstLong = 256;  // beyond all letters

}  // namespace

CommandLine::CommandLine(const std::vector<OptionSyntax>& options, int argc, char** argv) {
  std::vector<OptionSyntax> known(std::begin(kCommonOptions), std::end(kCommonOptions));
  known.insert(known.end(), options.begin(), options.end());
  std::string letters = ":";
  std::vector<option> longOptions;
  std::map<int, const char*> names;  // by letter, and by the code of a long option
  for (const OptionSyntax& syntax : known) {
    const int code = kFirstLong + static_cast<int>(longOptions.size());
    names[code] = syntax.name;
    longOptions.push_back(
        {syntax.name, syntax.takesValue ? required_argument : no_argument, nullptr, code});
    if (syntax.letter != 0) {
      names[syntax.letter] = syntax.name;
      letters += std::string(1, syntax.letter) + (syntax.takesValue ? ":" : "");
    }
  }
  longOptions.push_back({nullptr, 0, nullptr, 0});
  opterr = 0;
  optind = 0;  // begin anew
  for (int code;
       (code = getopt_long(argc, argv, letters.c_str(), longOptions.data(), nullptr)) != -1;) {
    // A letter may stand in the middle of a word of several.
    const bool isLetter = optopt != 0 && optopt < kFirstLong;
    const std::string given =
        isLetter ? std::string("-") + static_cast<char>(optopt) : std::string(argv[optind - 1]);
    if (code == ':') throw UsageError("the option " + given + " needs a value");
    if (code == '?') throw UsageError("unknown or misused option '" + given + "'");
    const std::string value = optarg != nullptr ? optarg : "";
    if (optarg != nullptr && value.empty()) {
      throw UsageError(std::string("the option --") + names[code] + " needs a value");
    }
    values_[names[code]].push_back(value);
  }
  words_.assign(argv + optind, argv + argc);
}

std::vector<std::string> CommandLine::Values(const std::string& option) const {
  const auto found = values_.find(option);
  return found == values_.end() ? std::vector<std::string>() : found->second;
}

std::string CommandLine::Value(const std::string& option) const {
  const auto values = Values(option);
  if (values.size() > 1) throw UsageError("--" + option + " is given twice");
  return values.empty() ? "" : values.front();
}

}  // namespace orvelcli
