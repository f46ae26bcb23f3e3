// Whole working days in `orvel session`, driven as another program drives it: through a pipe, with
// answers in JSON.

#include <algorithm>

#include <gmock/gmock.h>

#include "tests/host/support/shell.h"

namespace orvelhost::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SessionJourney : public ShellTest {
 protected:
  SessionJourney() {
    WriteFile(folder_ / "a b.wav", Make(44100, 2, 0.6, Sine(0.25)));
    WriteFile(folder_ / "c.wav", Make(48000, 1, 0.6, Sine(0.5)));
    WriteFile(folder_ / "d.wav", Make(44100, 2, 0.6, Noise(0.1)));
  }

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

TEST_F(SessionJourney, ADayIsTheSameAfterItWasUndoneAndDoneAgainAndSavedAndOpened) {
  std::string commands = kDay + "history\n" + Questions();
  for (std::size_t i = 0; i <= kSteps; ++i) commands += "undo\n";
  commands += "clips\n";
  for (std::size_t i = 0; i <= kSteps; ++i) commands += "redo\n";
  const auto day =
      Answers(commands + Questions() + "save day.orvelsession\nhistory\nrender out", 1, "--json");
  const auto part = [&](std::size_t begin, std::size_t size) {
    const auto from = day.begin() + static_cast<std::ptrdiff_t>(begin);
    return std::vector(from, from + static_cast<std::ptrdiff_t>(size));
  };
  const std::size_t lines = static_cast<std::size_t>(std::ranges::count(kDay, '\n'));
  ASSERT_EQ(day.size(), lines + 1 + 2 * kQuestions + 2 * (kSteps + 1) + 1 + 3);
  const auto history = teskcore::serialization::JSONParse(day[lines]);
  EXPECT_EQ(Get<JSONArray>(history, "steps").size(), kSteps);
  EXPECT_TRUE(Get<bool>(history, "modified"));
  const auto before = part(lines + 1, kQuestions);
  EXPECT_THAT(before[2], HasSubstr(R"("current":"Mine *")"));
  EXPECT_THAT(before[3], HasSubstr("\"(Custom)\"")) << "configured";
  EXPECT_THAT(before[13], HasSubstr(R"("mixed":true,"name":"volume.Volume")"));
  EXPECT_THAT(day[lines + 1 + kQuestions + kSteps], HasSubstr("nothing to undo"));
  const auto undone = Get<JSONArray>(
      teskcore::serialization::JSONParse(day[lines + 2 + kQuestions + kSteps]), "clips");
  for (const auto& clip : undone) EXPECT_EQ(Get<std::string>(clip, "mode"), "none");
  EXPECT_EQ(part(day.size() - 3 - kQuestions, kQuestions), before);
  EXPECT_THAT(day[day.size() - 2], HasSubstr(R"("modified":false)"));

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
      "set duration.Mode 0\nset duration.Enabled 1\nshow duration");
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
  EXPECT_LT(value(6, 3), 0.0f) << "adjusted";
  EXPECT_EQ(analysis(7), "running") << "anew";
  EXPECT_EQ(value(8, 2), value(6, 2));
  EXPECT_EQ(analysis(10), "running") << "a map for a remix";
  EXPECT_NEAR(value(11, 5), 0.6, 1e-4) << "too short for a remix: it stays as long as it is";
  EXPECT_NEAR(value(11, 6), 0.6, 1e-4);
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
}

}  // namespace
}  // namespace orvelhost::testing
