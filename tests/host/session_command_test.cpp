#include <algorithm>
#include <sstream>

#include <gmock/gmock.h>

#include "orvel/orvel.h"
#include "tests/host/support/cli.h"

namespace orvelhost::testing {
namespace {

using teskcore::serialization::GetVariantInObject;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONParse;
using teskcore::serialization::JSONToFloat;
using teskcore::serialization::JSONValuePtr;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// A folder with two recordings, and presets of its own.
class SessionCommandTest : public CliTest {
 protected:
  SessionCommandTest() {
    WriteFile(folder_ / "a b.wav", Make(44100, 2, 0.1, Sine(0.25)));
    WriteFile(folder_ / "c.wav", Make(44100, 2, 0.1, Sine(0.5)));
  }

  /// The answers to the commands, which stand a line each.
  std::vector<std::string> Answers(const std::string& commands, int exitCode = 0,
                                   const std::string& options = "") {
    const Outcome outcome = Run("--prefs own session " + options, commands);
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.output;
    EXPECT_THAT(outcome.errors, IsEmpty());
    std::vector<std::string> lines;
    std::istringstream stream(outcome.output);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  std::string LastAnswer(const std::string& commands, int exitCode = 0,
                         const std::string& options = "") {
    const auto lines = Answers(commands, exitCode, options);
    return lines.empty() ? "" : lines.back();
  }
};

constexpr char kTwoDialogs[] = "add 'a b.wav' c.wav\nmode dialog\n";

TEST_F(SessionCommandTest, ADayIsUndoneToItsStartAndSavedAndOpenedTheSame) {
  const std::string work = std::string(kTwoDialogs) +
                           "preset 'Podcast Voice'\n"
                           "set volume.Volume -3\n"
                           "select 1\n"
                           "set volume.Volume 2\n"
                           "select all\n"
                           "offset volume.Volume 0.5\n"
                           "drag clarity.EQAmount 1 2 3.5 4\n"
                           "configure volume MaxGain 4\n";
  EXPECT_EQ(LastAnswer(work + "history"),
            "Set Mode dialog, Preset Podcast Voice, Set volume.Volume, Set volume.Volume, "
            "Move volume.Volume, Set clarity.EQAmount, Configure Orvel Template");
  const auto undone = Answers(work +
                                  "show\nundo\nundo\nundo\nundo\nundo\nundo\nundo\nundo\nclips\n"
                                  "redo\nredo\nredo\nredo\nredo\nredo\nredo\nredo\nshow",
                              1);
  ASSERT_EQ(undone.size(), 29u);
  EXPECT_EQ(undone[18], "error: there is nothing to undo");
  EXPECT_EQ(undone[19], "1 a b.wav (none, selected), 2 c.wav (none, selected)");
  EXPECT_EQ(undone[27], "error: there is nothing to redo");
  EXPECT_EQ(undone[28], undone[10]);
  EXPECT_THAT(undone[28], HasSubstr("clarity.EQAmount=4, "));

  const std::string questions = "clips\nshow\npresets\ntemplates\n";
  auto before = Answers(work + "save day.orvelsession\n" + questions);
  auto after = Answers("open day.orvelsession\n" + questions);
  before.erase(before.begin(), before.end() - 4);
  EXPECT_EQ(std::vector(after.begin() + 1, after.end()), before);
  EXPECT_EQ(LastAnswer("undo", 1, "day.orvelsession"), "error: there is nothing to undo");
  const std::string saved = ReadBytes(folder_ / "day.orvelsession");
  EXPECT_THAT(LastAnswer("save", 0, "day.orvelsession"), EndsWith("/day.orvelsession"));
  EXPECT_EQ(ReadBytes(folder_ / "day.orvelsession"), saved);
}

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

TEST_F(SessionCommandTest, InJsonEachAnswerIsAnObject) {
  const auto answers = Answers(std::string(kTwoDialogs) +
                                   "select 1\n"
                                   "set volume.Volume -6\n"
                                   "select 1 2\n"
                                   "show volume\n"
                                   "frobnicate\n"
                                   "clips\n",
                               1, "--json");
  std::vector<JSONValuePtr> objects;
  for (const auto& answer : answers) objects.push_back(JSONParse(answer));
  ASSERT_EQ(objects.size(), 8u);
  const auto& parameters =
      boost::any_cast<const JSONArray&>(*GetVariantInObject(objects[5], "parameters"));
  ASSERT_EQ(parameters.size(), 3u);
  const auto& volume = parameters[2];
  EXPECT_EQ(boost::any_cast<std::string>(*GetVariantInObject(volume, "name")), "volume.Volume");
  EXPECT_TRUE(boost::any_cast<bool>(*GetVariantInObject(volume, "mixed")));
  EXPECT_FALSE(boost::any_cast<bool>(*GetVariantInObject(volume, "enabled")));
  const std::pair<const char*, float> numbers[] = {
      {"least", -6.0f}, {"greatest", 0.0f}, {"min", -15.0f}, {"max", 6.0f}};
  for (const auto& [key, number] : numbers) {
    EXPECT_NEAR(JSONToFloat(*GetVariantInObject(volume, key)), number, 1e-5) << key;
  }
  EXPECT_THAT(boost::any_cast<std::string>(*GetVariantInObject(objects[6], "error")),
              HasSubstr("'frobnicate'"));
  EXPECT_EQ(boost::any_cast<const JSONArray&>(*GetVariantInObject(objects[7], "clips")).size(), 2u);
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
