// Whole working days in `orvel session`, driven as another program drives it: through a pipe, with
// answers in JSON. Then what its commands promise to people.

#include <gmock/gmock.h>

#include "tests/host/support/shell.h"

namespace orvelhost::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class SessionJourney : public ShellTest {
 protected:
  /// What can be asked of a session, clip by clip.
  static std::string Questions() {
    std::string questions;
    for (const char* selection : {"1", "2", "3", "1 2"}) {
      questions += std::string("select ") + selection + "\nshow\npresets\ntemplates\n";
    }
    return questions + "clips\n";
  }

  static constexpr std::size_t kQuestions = 17;

  static std::vector<std::string> Tail(const std::vector<std::string>& answers) {
    return {answers.end() - std::ptrdiff_t{kQuestions}, answers.end()};
  }
};

constexpr std::size_t kSteps = 12;
const std::string kDay =
    "add 'a b.wav' c.wav d.wav\n"
    "select 3\nmode music\nset duration.Enabled 1\nset duration.TargetDuration 1\n"
    "select 1 2\nmode dialog\npreset 'Podcast Voice'\n"
    "select 1\nset volume.Volume 2\n"
    "select 1 2\noffset volume.Volume 0.5\n"
    "drag clarity.EQAmount 1 2 3.5 4\n"
    "set loudness.AutoLoudness 1\n"
    "select 1\nset restoration.EnableReduceHum 1\nsave-preset Mine\n"
    "configure volume MaxGain 4\n";

TEST_F(SessionJourney, ADayIsTheSameAfterItWasSavedAndOpened) {
  const auto day = Answers(
      kDay + "render out\nhistory\nselect 1 2\nsave day.orvelsession\nhistory\n" + Questions(), 0,
      "--json");
  const auto before = Tail(day);
  const auto history = teskcore::serialization::JSONParse(day.at(day.size() - kQuestions - 4));
  EXPECT_EQ(Get<JSONArray>(history, "steps").size(), kSteps);
  EXPECT_TRUE(Get<bool>(history, "modified"));
  EXPECT_THAT(day[day.size() - kQuestions - 1], HasSubstr(R"("modified":false)"));
  EXPECT_THAT(before[2], HasSubstr(R"("current":"Mine *")"));
  EXPECT_THAT(before[3], HasSubstr("\"(Custom)\"")) << "configured";
  EXPECT_THAT(before[13], HasSubstr(R"("mixed":true,"name":"volume.Volume")"));

  const auto opened = Answers(Questions() + "render again\nundo", 1, "--json day.orvelsession");
  EXPECT_EQ(std::vector(opened.begin() + 1, opened.end() - 2), before);
  EXPECT_THAT(opened.back(), HasSubstr("nothing to undo"));
  for (const char* name : {"a b.wav", "c.wav", "d.wav"}) {
    EXPECT_EQ(ReadBytes(folder_ / "again" / name), ReadBytes(folder_ / "out" / name)) << name;
  }
  EXPECT_EQ(ReadFile(folder_ / "out/d.wav").FrameCount(), 44100u) << "a second";
  const std::string saved = ReadBytes(folder_ / "day.orvelsession");
  Answers(Questions() + "save", 0, "day.orvelsession");
  EXPECT_EQ(ReadBytes(folder_ / "day.orvelsession"), saved);
}

TEST_F(SessionJourney, WhatIsMeasuredIsToldWhenItIsAskedFor) {
  const auto objects = Objects(
      "add d.wav c.wav\nselect 1\nmode music\nset loudness.AutoLoudness 1\nhistory\nclips\n"
      "show loudness\nset loudness.ResetLoudnessMeasurements 1\nshow loudness\n"
      "set duration.Mode 0\nset duration.Enabled 1\nshow duration\n"
      "set loudness.AutoLoudness 0\nshow loudness");
  const auto analysis = [&](std::size_t line) {
    return Get<std::string>(objects[line], "analysis");
  };
  const auto value = [&](std::size_t line, std::size_t parameter) {
    return teskcore::serialization::JSONToFloat(
        *Member(Get<JSONArray>(objects[line], "parameters").at(parameter), "value"));
  };
  EXPECT_EQ(analysis(2), "none") << "no section asks";
  EXPECT_EQ(analysis(3), "running");
  const auto clips = Get<JSONArray>(objects[5], "clips");
  EXPECT_EQ(Get<std::string>(clips[0], "analysis"), "done");
  EXPECT_EQ(Get<std::string>(clips[1], "analysis"), "none");
  EXPECT_EQ(analysis(6), "done");
  EXPECT_NEAR(value(6, 3), -25.0f, 0.01f) << "adjusted to the target of music";
  EXPECT_EQ(analysis(7), "running") << "anew";
  EXPECT_EQ(value(8, 2), value(6, 2));
  EXPECT_EQ(analysis(10), "running") << "a map for a remix";
  EXPECT_NEAR(value(11, 5), 0.6, 1e-4) << "too short for a remix: it stays as long as it is";
  EXPECT_NEAR(value(11, 6), 0.6, 1e-4);
  EXPECT_EQ(value(13, 3), value(13, 2)) << "it lets go when it is off";
}

TEST_F(SessionJourney, LostRecordingsAreKeptAndBadSessionsChangeNothing) {
  const auto whole =
      Tail(Answers(kDay + Questions() + "save day.orvelsession\n" + Questions(), 0, "--json"));
  std::filesystem::rename(folder_ / "c.wav", folder_ / "lost");
  const auto opened = Objects("clips\nrender out\nsave", 1, "day.orvelsession");
  const auto missing = Get<JSONArray>(opened[0], "missing");
  ASSERT_EQ(missing.size(), 1u);
  EXPECT_THAT(boost::any_cast<std::string>(*missing[0]), HasSubstr("/c.wav"));
  EXPECT_TRUE(Get<bool>(Get<JSONArray>(opened[1], "clips").at(1), "missing"));
  EXPECT_THAT(Get<std::string>(opened[2], "error"), HasSubstr("c.wav"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "out/d.wav"));
  std::filesystem::rename(folder_ / "lost", folder_ / "c.wav");
  EXPECT_EQ(Tail(Answers(Questions(), 0, "--json day.orvelsession")), whole);

  std::string text = ReadBytes(folder_ / "day.orvelsession");
  WriteBytes(folder_ / "cut.orvelsession", text.substr(0, text.size() / 2));
  const auto version = text.find(R"("version": 1)");
  WriteBytes(folder_ / "newer.orvelsession", text.replace(version, 12, R"("version": 9)"));
  const auto answers = Answers(
      "undo\nset volume.Volume 1\nopen cut.orvelsession\nopen newer.orvelsession\n"
      "open c.wav\nhistory\nundo\n" +
          Questions(),
      1, "--json day.orvelsession");
  EXPECT_THAT(answers[3], HasSubstr("'cut.orvelsession' is damaged"));
  EXPECT_THAT(answers[4], HasSubstr("'newer.orvelsession' was saved by a newer version"));
  EXPECT_THAT(answers[5], HasSubstr("'c.wav'"));
  EXPECT_THAT(answers[6], HasSubstr(R"("steps":["Set volume.Volume"])"));
  EXPECT_EQ(Tail(answers), whole);

  const std::string newer = ReadBytes(folder_ / "newer.orvelsession");
  EXPECT_EQ(Answers("add c.wav\nsave\nsave newer.orvelsession", 1, "newer.orvelsession").size(),
            1u);
  EXPECT_THAT(Answers("add c.wav\nsave newer.orvelsession", 1).back(), HasSubstr("is no session"));
  EXPECT_EQ(ReadBytes(folder_ / "newer.orvelsession"), newer);
}

using SessionCommands = ShellTest;

constexpr char kTwoDialogs[] = "add 'a b.wav' c.wav\nmode dialog\n";

TEST_F(SessionCommands, AWholeSessionMovesToAnotherMachine) {
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

TEST_F(SessionCommands, ThePresetShownIsTheOneThatTheValuesAre) {
  const auto answers = Answers(
      std::string(kTwoDialogs) +
      "presets\nset volume.Volume 1\npresets\nset volume.Volume 0\npresets\nsave-preset Mine\n"
      "set volume.Volume 1\npresets\nselect 2\nsave-preset Mine\npresets\nselect all\n"
      "set volume.Volume 2\nselect 1\npreset (Default)\nselect all\npresets\n"
      "remove-preset Mine\nselect 2\npresets");
  const std::pair<std::size_t, const char*> expected[] = {
      {2, "now (Default);"}, {4, "now (Custom);"}, {6, "now (Default);"}, {9, "now Mine *;"},
      {12, "now Mine;"},     {18, "now (mixed);"}, {21, "now (Custom);"}};
  for (const auto& [line, start] : expected) EXPECT_THAT(answers.at(line), StartsWith(start));
}

TEST_F(SessionCommands, ATemplateIsAStepThatBringsBackWhatWasConfiguredUnderTheLast) {
  const auto answers = Answers(
      std::string(kTwoDialogs) +
      "configure loudness DefaultLoudness -16\nsave-template Podcast\ntemplate (Default)\n"
      "set loudness.AutoLoudness 1\nconfigure loudness DefaultLoudness -30\ntemplate Podcast\n"
      "show loudness\nundo\nshow loudness\nundo\ntemplates\nredo\nredo\nshow loudness\n"
      "configure loudness DefaultLoudness -18\nrevert\nundo\nundo\ntemplates\nhistory\n"
      "template (Default)\nsave-template Film\nsave-preset Night\nundo\nundo\nredo\nredo\npresets");
  const std::pair<std::size_t, const char*> expected[] = {
      {8, "AdjustedLoudness=-16,"},  {9, "undid Template Podcast"},
      {10, "AdjustedLoudness=-30,"}, {12, "now (Default);"},
      {15, "AdjustedLoudness=-16,"}, {18, "undid Revert Template"},
      {20, "now Podcast;"},          {21, "undone: Configure Orvel Template, Revert Template"}};
  for (const auto& [line, part] : expected) EXPECT_THAT(answers.at(line), HasSubstr(part));
  EXPECT_THAT(answers.back(), StartsWith("now Night;")) << "under Film, which was saved";
}

TEST_F(SessionCommands, EachClipIsRenderedAsItIsSetAndNothingIsReplaced) {
  std::filesystem::create_directories(folder_ / "more");
  std::filesystem::copy(folder_ / "c.wav", folder_ / "more/c.wav");
  const std::string work =
      "add 'a b.wav' c.wav more/c.wav\n"
      "select 1\nmode sfx\nset volume.EnableVolume 1\nset volume.Volume -6\n"
      "select 2\nmode sfx\npreset 'from the left'\n";
  EXPECT_EQ(Answers(work + "render out").back(), "rendered out/a b.wav, out/c.wav, out/c 2.wav");
  EXPECT_NEAR(RmsInDb(ReadFile(folder_ / "out/a b.wav")) - RmsInDb(ReadFile(folder_ / "a b.wav")),
              -6.0, 0.1);
  EXPECT_TRUE(IsSilent(ReadFile(folder_ / "out/c.wav").Channel(1)));
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder_ / "out/c 2.wav"), ReadFile(folder_ / "c.wav")));

  const auto cut = folder_ / "more/c.wav";
  std::filesystem::resize_file(cut, std::filesystem::file_size(cut) - 1000);
  EXPECT_THAT(Answers("add more/c.wav\nrender cut").back(), HasSubstr("; note: cut/c.wav: "));
  EXPECT_THAT(Answers("add c.wav\nmode dialog\nconfigure loudness MinLoudness -100\n"
                      "configure loudness DefaultLoudness -80\nset loudness.AutoLoudness 1\n"
                      "render low")
                  .back(),
              HasSubstr("cannot be measured"))
      << "so low a target lies below what is measured";
  std::filesystem::remove(folder_ / "out/c.wav");
  WriteBytes(folder_ / "out/a b.wav", "as it was");
  const auto answers = Answers(work + "save day.orvelsession\nrender out\nclips", 1);
  EXPECT_THAT(answers[answers.size() - 2],
              ::testing::AllOf(StartsWith("error: rendered out/c.wav; "),
                               HasSubstr("'out/a b.wav' exists"), HasSubstr("'out/c 2.wav'")));
  EXPECT_THAT(answers.back(), HasSubstr("2 c.wav (sfx, selected)"));
  EXPECT_EQ(ReadBytes(folder_ / "out/a b.wav"), "as it was");

  std::filesystem::remove(folder_ / "c.wav");
  EXPECT_THAT(Answers("render again", 1, "day.orvelsession --json").back(),
              HasSubstr(R"("file":"again/c 2.wav","notes")"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "again"),
                          std::filesystem::directory_iterator()),
            2);
  EXPECT_THAT(Answers("render more/c.wav/x", 1, "day.orvelsession").back(),
              HasSubstr("'more/c.wav/x'"));
  EXPECT_THAT(Answers("render none/at/all", 1).back(), HasSubstr("no clips"));
}

TEST_F(SessionCommands, ATerminalCompletesAndUnsavedWorkIsNotLostUnasked) {
  std::filesystem::rename(folder_ / "c.wav", folder_ / "Ger\u00e4t.wav");
  const Outcome outcome = Run("--version >/dev/null && TERM=xterm LC_ALL=C script -qec '" ORVEL_CLI
                              " --prefs own session' /dev/null",
                              "add Ger\u00e4t.wav\nmo\tdial\t\nset volume.Vol\t 1\nquit\nshow "
                              "volume\nopen day\nquit\nquit\n");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.output, HasSubstr("\nadded 1 Ger\u00e4t.wav"));
  EXPECT_THAT(outcome.output, HasSubstr("\nmode dialog\r"));
  EXPECT_THAT(outcome.output, HasSubstr("\nvolume.Volume=1\r"));
  std::size_t warnings = 0;
  for (auto place = outcome.output.find("error: the session is not saved");
       place != std::string::npos; place = outcome.output.find("error: the session", place + 1)) {
    ++warnings;
  }
  EXPECT_EQ(warnings, 3u) << "other commands came between";
}

TEST_F(SessionCommands, ACommandThatFailsChangesNothingAndTheShellGoesOn) {
  const std::pair<const char*, const char*> cases[] = {
      {"add", "write add FILE..."},
      {"add c.wav text.txt", "'text.txt'"},
      {"select 3", "no clip 3"},
      {"mode opera", "'opera'"},
      {"preset 'From the Left'", "in the mode dialog"},
      {"remove-preset (Default)", "stays"},
      {"save-template (Default)", "a template of this name"},
      {"save-template ''", "needs a name"},
      {"configure volume Gain 3", "MaxGain, MinGain"},
      {"configure volume MaxGain nan", "'nan'"},
      {"configure loudness LoudnessStandard -1", "'-1'"},
      {"show pan", "no section 'pan'"},
      {"set volume.Volume", "write set"},
      {"set volume.Volume loud", "'loud' is no number"},
      {"set volume.Volume 7", "-15 to 6"},
      {"set volume.Enabled 0.5", "0 or 1"},
      {"set loudness.MeasuredLoudness 1", "only be read"},
      {"drag volume.Volume 1 2 70", "-15 to 6"},
      {"offset loudness.MeasuredLoudness 1", "cannot be moved"},
      {"offset loudness.AutoLoudness 0.3", "cannot be moved"},
      {"offset clarity.EQPreset 0.5", "whole steps"},
      {"save", "no file yet"},
      {"save no/day.orvelsession", "'no/day.orvelsession'"},
      {"save c.wav", "'c.wav' exists and is no session"},
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
  const auto full = Run("--prefs own session", "save day.orvelsession\nclips\n", "ulimit -f 8; ");
  EXPECT_THAT(full.output, ::testing::AllOf(HasSubstr("too large"), EndsWith("no clips\n")));
  EXPECT_THAT(Answers("mode dialog\nshow\nadd c.wav\npresets", 1),
              ElementsAre(HasSubstr("no clip is selected"), HasSubstr("no clip is selected"),
                          StartsWith("added"), HasSubstr("no mode")));
}

}  // namespace
}  // namespace orvelhost::testing
