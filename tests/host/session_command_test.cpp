#include <algorithm>

#include <gmock/gmock.h>

#include "tests/host/support/shell.h"

namespace orvelhost::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A folder with two recordings, and presets of its own.
class SessionCommandTest : public ShellTest {
 protected:
  SessionCommandTest() {
    WriteFile(folder_ / "a b.wav", Make(44100, 2, 0.1, Sine(0.25)));
    WriteFile(folder_ / "c.wav", Make(44100, 2, 0.1, Sine(0.5)));
  }
};

constexpr char kTwoDialogs[] = "add 'a b.wav' c.wav\nmode dialog\n";

TEST_F(SessionCommandTest, AWholeSessionMovesToAnotherMachine) {
  Answers(std::string(kTwoDialogs) +
          "configure volume MaxGain 4\nsave-template Studio\n"
          "save-preset Mine\nsave day.orvelsession");
  std::filesystem::rename(folder_ / "own", folder_ / "gone");
  std::filesystem::create_directories(folder_ / "there");
  std::filesystem::rename(folder_ / "day.orvelsession", folder_ / "there/day.orvelsession");
  std::filesystem::rename(folder_ / "c.wav", folder_ / "there/c.wav");
  const auto answers =
      Answers("templates\nclips\nshow volume\nsave back.orvelsession", 0, "there/day.orvelsession");
  EXPECT_THAT(answers[0], StartsWith("opened there/day.orvelsession: 2 clips; missing: "));
  EXPECT_THAT(answers[0], EndsWith("/there/a b.wav"));
  EXPECT_EQ(answers[1], "now Studio (from Session); there are (Default), Studio (from Session)");
  EXPECT_EQ(answers[2], "1 a b.wav (dialog, missing, selected), 2 c.wav (dialog, selected)");
  EXPECT_THAT(Answers("templates", 0, "back.orvelsession"),
              Contains(StartsWith("now Studio (from Session)")));
  std::filesystem::remove_all(folder_ / "own");
  std::filesystem::rename(folder_ / "gone", folder_ / "own");
  EXPECT_THAT(Answers("templates\npresets", 0, "back.orvelsession"),
              ElementsAre(HasSubstr("2 clips; missing"), StartsWith("now Studio;"),
                          StartsWith("now Mine;")));
}

TEST_F(SessionCommandTest, ThePresetShownIsTheOneThatTheValuesAre) {
  const auto answers = Answers(std::string(kTwoDialogs) +
                               "presets\n"
                               "set volume.Volume 1\n"
                               "presets\n"
                               "set volume.Volume 0\n"
                               "presets\n"
                               "save-preset Mine\n"
                               "set volume.Volume 1\n"
                               "presets\n"
                               "select 2\n"
                               "save-preset Mine\n"
                               "presets\n"
                               "select all\n"
                               "set volume.Volume 2\n"
                               "select 1\n"
                               "preset (Default)\n"
                               "select all\n"
                               "presets\n"
                               "remove-preset Mine\n"
                               "select 2\n"
                               "presets");
  const std::pair<std::size_t, const char*> expected[] = {
      {2, "now (Default);"}, {4, "now (Custom);"}, {6, "now (Default);"}, {9, "now Mine *;"},
      {12, "now Mine;"},     {18, "now (mixed);"}, {21, "now (Custom);"}};
  for (const auto& [line, start] : expected) EXPECT_THAT(answers.at(line), StartsWith(start));
}

TEST_F(SessionCommandTest, EachClipIsRenderedAsItIsSetAndNothingIsReplaced) {
  std::filesystem::create_directories(folder_ / "more");
  std::filesystem::copy(folder_ / "c.wav", folder_ / "more/c.wav");
  const std::string work =
      "add 'a b.wav' c.wav more/c.wav\n"
      "select 1\nmode sfx\nset volume.EnableVolume 1\nset volume.Volume -6\n"
      "select 2\nmode sfx\npreset 'from the left'\n";
  EXPECT_EQ(LastAnswer(work + "render out"), "rendered out/a b.wav, out/c.wav, out/c 2.wav");
  EXPECT_NEAR(RmsInDb(ReadFile(folder_ / "out/a b.wav")) - RmsInDb(ReadFile(folder_ / "a b.wav")),
              -6.0, 0.1);
  const AudioBlock left = ReadFile(folder_ / "out/c.wav");
  EXPECT_TRUE(std::ranges::all_of(left.Channel(1), [](float sample) { return sample == 0.0f; }));
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder_ / "out/c 2.wav"), ReadFile(folder_ / "c.wav")));

  std::filesystem::remove(folder_ / "out/c.wav");
  WriteBytes(folder_ / "out/a b.wav", "as it was");
  const auto answers = Answers(work + "save day.orvelsession\nrender out\nclips", 1);
  EXPECT_THAT(answers[answers.size() - 2],
              ::testing::AllOf(StartsWith("error: rendered out/c.wav; "),
                               HasSubstr("'out/a b.wav' exists"), HasSubstr("'out/c 2.wav'")));
  EXPECT_THAT(answers.back(), HasSubstr("2 c.wav (sfx, selected)"));
  EXPECT_EQ(ReadBytes(folder_ / "out/a b.wav"), "as it was");

  std::filesystem::remove(folder_ / "c.wav");
  EXPECT_THAT(LastAnswer("render again", 1, "day.orvelsession --json"),
              HasSubstr(R"("file":"again/c 2.wav","notes")"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "again"),
                          std::filesystem::directory_iterator()),
            2);
  EXPECT_THAT(LastAnswer("render more/c.wav/x", 1, "day.orvelsession"),
              HasSubstr("'more/c.wav/x'"));
}

TEST_F(SessionCommandTest, ATerminalCompletesAndUnsavedWorkIsNotLostUnasked) {
  const Outcome outcome =
      Run("--version >/dev/null && TERM=xterm script -qec '" ORVEL_CLI
          " --prefs own session' /dev/null",
          "add c.wav\nmo\tdial\t\nset volume.Vol\t 1\nquit\nshow volume\nquit\nquit\n");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.output, HasSubstr("\nmode dialog\r"));
  EXPECT_THAT(outcome.output, HasSubstr("\nvolume.Volume=1\r"));
  const auto first = outcome.output.find("error: the session is not saved");
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(outcome.output.find("error: the session is not saved", first + 1), std::string::npos)
      << "another command came between";
}

TEST_F(SessionCommandTest, ACommandThatFailsChangesNothingAndTheShellGoesOn) {
  WriteBytes(folder_ / "text.txt", "no audio\n");
  WriteBytes(folder_ / "broken.orvelsession", "{");
  const std::pair<const char*, const char*> cases[] = {
      {"add", "write add FILE..."},
      {"add missing.wav c.wav", "'missing.wav'"},
      {"add c.wav text.txt", "'text.txt'"},
      {"select 3", "no clip 3"},
      {"select 0", "no clip 0"},
      {"select one", "'one'"},
      {"mode opera", "'opera'"},
      {"preset nobody", "'nobody'"},
      {"preset 'From the Left'", "in the mode dialog"},
      {"save-preset Default", "reserved"},
      {"save-preset 'Podcast Voice'", "comes with the library"},
      {"remove-preset (Default)", "stays"},
      {"template nobody", "'nobody'"},
      {"save-template Default", "reserved"},
      {"save-template (Default)", "a template of this name"},
      {"save-template ''", "needs a name"},
      {"configure volume Gain 3", "MaxGain, MinGain"},
      {"configure volume MaxGain loud", "'loud'"},
      {"configure volume MaxGain nan", "'nan'"},
      {"configure pan MaxGain 3", "'pan'"},
      {"configure loudness LoudnessStandard -1", "'-1'"},
      {"show pan", "no section 'pan'"},
      {"set volume.Volume", "write set"},
      {"set volume.Volume loud", "'loud' is no number"},
      {"set volume.Volume 7", "-15 to 6"},
      {"set volume.Enabled 0.5", "0 to 1"},
      {"set volume.Loud 1", "'volume.Loud'"},
      {"set loudness.MeasuredLoudness 1", "only be read"},
      {"drag volume.Volume 1 2 70", "-15 to 6"},
      {"offset loudness.MeasuredLoudness 1", "cannot be moved"},
      {"open missing.orvelsession", "'missing.orvelsession'"},
      {"open broken.orvelsession", "damaged"},
      {"save", "no file yet"},
      {"save no/day.orvelsession", "'no/day.orvelsession'"},
      {"select 'all", "quote"},
      {"'' x", "no command ''"},
  };
  std::string commands = kTwoDialogs;
  for (const auto& [command, error] : cases) {
    commands += std::string(command) + "\nclips\nhistory\n\n";
  }
  const auto answers = Answers(commands + "quit\nnever\n", 1);
  ASSERT_EQ(answers.size(), 2 + 3 * std::size(cases));
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(cases[i].first);
    EXPECT_THAT(answers[2 + 3 * i],
                ::testing::AllOf(StartsWith("error: "), HasSubstr(cases[i].second)));
    EXPECT_EQ(answers[3 + 3 * i], answers[3]);
    EXPECT_EQ(answers[4 + 3 * i], "Set Mode dialog");
  }
  EXPECT_THAT(Answers("clips\nundo", 1, "--quiet"), ElementsAre(StartsWith("error")));
  EXPECT_THAT(Answers("mode dialog\nshow\nadd c.wav\npresets", 1),
              ElementsAre(HasSubstr("no clip is selected"), HasSubstr("no clip is selected"),
                          StartsWith("added"), HasSubstr("no mode")));
}

}  // namespace
}  // namespace orvelhost::testing
