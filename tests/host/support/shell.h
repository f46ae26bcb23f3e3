#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/orvel.h"
#include "tests/host/support/cli.h"

namespace orvelhost::testing {

using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONValuePtr;

inline JSONValuePtr Member(const JSONValuePtr& object, const char* key) {
  return teskcore::serialization::GetVariantInObject(object, key);
}
template <typename T>
T Get(const JSONValuePtr& object, const char* key) {
  return boost::any_cast<T>(*Member(object, key));
}

/// Works on sessions by the commands of `orvel session`, in a folder with three recordings and with
/// presets of its own.
class ShellTest : public CliTest {
 protected:
  ShellTest() {
    WriteFile(folder_ / "a b.wav", Make(44100, 2, 0.6, Sine(0.25)));
    WriteFile(folder_ / "c.wav", Make(48000, 1, 0.6, Sine(0.5)));
    WriteFile(folder_ / "d.wav", Make(44100, 2, 0.6, Noise(0.1)));
    WriteBytes(folder_ / "text.txt", "no audio\n");
  }

  /// The answers to the commands, which stand a line each.
  std::vector<std::string> Answers(const std::string& commands, int exitCode = 0,
                                   const std::string& options = "") {
    const Outcome outcome = Run("--prefs own session " + options, commands);
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.output;
    EXPECT_EQ(outcome.errors, "");
    std::vector<std::string> lines;
    std::istringstream stream(outcome.output);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  /// The same as JSON objects.
  std::vector<JSONValuePtr> Objects(const std::string& commands, int exitCode = 0,
                                    const std::string& options = "") {
    std::vector<JSONValuePtr> objects;
    for (const auto& line : Answers(commands, exitCode, "--json " + options)) {
      objects.push_back(teskcore::serialization::JSONParse(line));
      EXPECT_TRUE(objects.back() &&
                  boost::any_cast<teskcore::serialization::JSONObject>(objects.back().get()))
          << line;
    }
    return objects;
  }
};

}  // namespace orvelhost::testing
