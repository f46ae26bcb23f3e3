#include "tests/host/support/cli.h"

#include <algorithm>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "orvel/orvel.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class RenderCliTest : public CliTest {
 protected:
  RenderCliTest() {
    WriteFile(folder_ / "in.wav", Make(44100, 2, 0.5, Sine(0.25)));
    WriteBytes(folder_ / "old.wav", "as it was");
    WriteBytes(folder_ / "text.txt", "no audio\n");
    std::filesystem::create_symlink("in.wav", folder_ / "link.png");
    std::filesystem::create_symlink("later.json", folder_ / "new.png");
  }
};

TEST_F(RenderCliTest, AFailureGivesOneLineItsExitCodeAndNoFile) {
  const struct {
    const char* arguments;
    int exitCode;
    const char* message;
  } cases[] = {
      {"frobnicate", 2, "'frobnicate'"},
      {"analyze", 2, "give a file"},
      {"analyze text.txt --json", 1, "'text.txt'"},
      {"render", 2, "one input"},
      {"render in.wav", 2, "-o"},
      {"render in.wav text.txt -o text.txt", 2, "is a folder"},
      {"render in.wav text.txt -o . --force", 2, "would replace the input 'in.wav'"},
      {"render . -o out.wav", 2, "is a folder"},
      {"render in.wav -o out.wav -o out2.wav", 2, "--output is given twice"},
      {"render in.wav -fo", 2, "-o needs a value"},
      {"render in.wav -o out.wav --report ''", 2, "--report needs a value"},
      {"render in.wav -fxo out.wav", 2, "'-x'"},
      {"render in.wav -o out.wav --jobs 0", 2, "1 to 256, not '0'"},
      {"render in.wav -o out.wav --picture a.jpg", 2, "must end in .png"},
      {"render in.wav old.wav -o new --picture a.png", 2, "the pictures go into one, too"},
      {"render in.wav -o out.wav --report old.wav", 2, "exists already"},
      {"render in.wav -o out.wav --picture link.png --force", 2, "replace the input 'in.wav'"},
      {"render in.wav -o out.wav --picture new.png --report \"$PWD/later.json\"", 2,
       "would replace the picture 'new.png'"},
      {"render in.wav old.wav -o out --report out/old.wav", 2, "the output 'out/old.wav'"},
      {"render in.wav -o out.wav --report none/r.json", 1, "'none/r.json'"},
      {"render in.wav -o out.wav --force=yes", 2, "--force"},
      {"render in.wav -o out.mp3", 2, ".wav or .flac"},
      {"render in.wav -o old.wav", 2, "exists already"},
      {"render in.wav -o out.wav --set volume.Volume=7", 2, "-15 to 6 dB"},
      {"render in.wav -o out.wav --mode opera", 2, "no mode 'opera'"},
      {"render in.wav -o out.wav --preset Podcast", 2, "give --mode"},
      {"render in.wav -o out.wav -m dialog -s pan.Pan=1", 2, "no section 'pan' here"},
      {"sections", 2, "dialog, music, sfx, ambience"},
      {"render takez -o outz", 1, "cannot read 'takez'"},
      {"render takez/ -o outz/", 1, "the folder 'takez/'"},
      {"render missing.wav -o out.wav", 1, "'missing.wav'"},
      {"render in.wav -o missing/out.wav", 1, "'missing/out.wav'"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.arguments);
    const Outcome outcome = Run(one.arguments);
    EXPECT_EQ(outcome.exitCode, one.exitCode);
    EXPECT_THAT(outcome.errors, HasSubstr(one.message));
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << outcome.errors;
    EXPECT_THAT(outcome.output, IsEmpty());
    EXPECT_THAT(folder_.FileNames(),
                ::testing::ElementsAre("in.wav", "link.png", "new.png", "old.wav", "text.txt"));
    EXPECT_EQ(ReadBytes(folder_ / "old.wav"), "as it was");
  }
}

TEST_F(RenderCliTest, RendersAndPrintsWhatChanged) {
  const Outcome outcome = Run("render in.wav --output=old.wav --force --set volume.Volume=4");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_THAT(outcome.errors, IsEmpty());
  EXPECT_THAT(outcome.output,
              ::testing::ContainsRegex("Sample peak, dBFS +-12.04 +-8.04 +\\+4.00"));
  EXPECT_NEAR(RmsInDb(ReadFile(folder_ / "old.wav")) - RmsInDb(ReadFile(folder_ / "in.wav")), 4.0,
              0.01);
  EXPECT_EQ(Run("render in.wav -o right.wav -m sfx -p 'from the LEFT' -s pan.Pan=5").exitCode, 0);
  EXPECT_TRUE(IsSilent(ReadFile(folder_ / "right.wav").Channel(0))) << "settings are stronger";
  EXPECT_THAT(Run("render in.wav -qo out.flac").output, IsEmpty());
  EXPECT_GT(ReadFile(folder_ / "out.flac").FrameCount(), 0U);
  EXPECT_EQ(Run("render in.wav out.flac -qo both --picture drawn --jobs 2").exitCode, 0);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "drawn/in.png"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "drawn/out.png"));
  std::filesystem::rename(folder_ / "in.wav", folder_ / "take:12.wav");
  EXPECT_EQ(Run("render take:12.wav -o out.wav").exitCode, 0) << "a colon makes no protocol";
}

/// The report's value at a path of keys and indices such as "files/0/status".
std::string At(const teskcore::serialization::JSONValuePtr& report, const std::string& path) {
  using namespace teskcore::serialization;
  JSONValuePtr value = report;
  std::istringstream keys(path);
  for (std::string key; value && std::getline(keys, key, '/');) {
    if (const auto* list = boost::any_cast<JSONArray>(value.get())) {
      const std::size_t index = std::stoul(key);
      value = index < list->size() ? (*list)[index] : nullptr;
    } else {
      value = GetVariantInObject(value, key);
    }
  }
  return value ? GetJSONUTF8String(*value, false) : "nothing";
}

TEST_F(RenderCliTest, AFolderOfFilesComesOutTheSameHoweverManyJobsThereAre) {
  const std::vector<std::string> names = {"a\nb.wav", "it's \"so\".flac", "\xe6\x97\xa5.wav"};
  std::filesystem::create_directories(folder_ / "day" / "deeper");
  for (const std::string& name : names) {
    WriteFile(folder_ / "day" / name, Make(44100, 2, 1.0, Noise(0.02)));
  }
  WriteFile(folder_ / "day" / "deeper" / "no.wav", Make(44100, 1, 0.1, Noise(0.1)));
  WriteBytes(folder_ / "day" / "notes.txt", "no audio\n");
  WriteBytes(folder_ / "day" / ".hidden", "no audio\n");
  const std::string look = "-m dialog -s loudness.AutoLoudness=1 -s clarity.DynamicsAmount=4 ";
  const Outcome one = Run("render day in.wav day/../in.wav -o one --jobs 1 " + look);
  EXPECT_EQ(one.exitCode, 0);
  EXPECT_THAT(one.errors, HasSubstr("note: left out: cannot read 'day/notes.txt'"));
  EXPECT_THAT(one.output, HasSubstr("day/a\\nb.wav -> one/a\\nb.wav\n"));
  EXPECT_EQ(Run("render day in.wav in.wav -qo two --jobs 2 --report r.json " + look).errors, "");
  const std::vector<std::string> made = {names[0], "in 2.wav", "in.wav", names[1], names[2]};
  for (const std::string& name : made) {
    EXPECT_EQ(ReadBytes(folder_ / "one" / name), ReadBytes(folder_ / "two" / name)) << name;
    EXPECT_GT(ReadFile(folder_ / "one" / name).FrameCount(), 0U) << name;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "one"), {}), 5);

  const auto report = teskcore::serialization::JSONParse(ReadBytes(folder_ / "r.json"));
  EXPECT_EQ(At(report, "mode"), "\"dialog\"");
  EXPECT_EQ(At(report, "files/0/input"), "\"day/a\\nb.wav\"");
  EXPECT_EQ(At(report, "files/0/status"), "\"rendered\"");
  EXPECT_EQ(At(report, "files/5"), "nothing");
  EXPECT_NEAR(std::stod(At(report, "files/1/after/integrated_lufs")), -23.0, 0.1);
  EXPECT_EQ(At(report, "files/1/effects/0/effect"), "\"Dynamics\"");
  EXPECT_EQ(At(report, "files/1/effects/0/parameters/0/unit"), "\"ms\"");
  EXPECT_THAT(At(report, "skipped/0"), HasSubstr("notes.txt"));
}

TEST_F(RenderCliTest, WhatFailsInABatchLeavesNothingAndTheRestIsDone) {
  for (const char* name : {"empty", "out", "takes"})
    std::filesystem::create_directory(folder_ / name);
  std::filesystem::create_symlink("nowhere", folder_ / "takes/lost.wav");
  WriteBytes(folder_ / "out" / "old.wav", "as it was");
  WriteFile(folder_ / "long.wav", Make(44100, 2, 4.0, Noise(0.1)));
  std::filesystem::copy_file(folder_ / "in.wav", folder_ / "old.wav",
                             std::filesystem::copy_options::overwrite_existing);
  const Outcome outcome =
      Run("render missing.wav text.txt old.wav long.wav in.wav empty takes -o out --report r.json",
          "", "ulimit -f 600; ");
  EXPECT_EQ(outcome.exitCode, 1);
  for (const char* message :
       {"'missing.wav': No such", "'text.txt'", "'out/old.wav' exists already",
        "'out/long.wav': File too large", "'empty' holds no audio", "'takes/lost.wav': No such"}) {
    EXPECT_THAT(outcome.errors, HasSubstr(message));
  }
  const auto report = teskcore::serialization::JSONParse(ReadBytes(folder_ / "r.json"));
  EXPECT_THAT(At(report, "files/3/error"), HasSubstr("too large"));
  EXPECT_EQ(At(report, "files/4/status"), "\"rendered\"");
  EXPECT_EQ(ReadBytes(folder_ / "out" / "old.wav"), "as it was");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "out"), {}), 2);
  EXPECT_EQ(Run("render text.txt missing.wav -o new/deeper").exitCode, 1);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new")) << "nothing came into it";
}

TEST_F(RenderCliTest, ADryRunMeasuresAndWritesNothing) {
  const Outcome outcome =
      Run("render in.wav -o new/ --dry-run --json --report r.json -m dialog -s "
          "loudness.AutoLoudness=1");
  EXPECT_EQ(outcome.exitCode, 0);
  const auto report = teskcore::serialization::JSONParse(outcome.output);
  EXPECT_EQ(At(report, "files/0/status"), "\"planned\"");
  EXPECT_EQ(At(report, "files/0/after"), "null");
  EXPECT_NEAR(std::stod(At(report, "files/0/loudness/gain_db")) +
                  std::stod(At(report, "files/0/before/integrated_lufs")),
              -23.0, 0.1);
  EXPECT_THAT(Run("render in.wav -o new.wav --dry-run -s volume.Volume=-6").output,
              ::testing::ContainsRegex("not written\n  Hard Limiter: Ceiling -1.28571 dBFS, Gain"));
  EXPECT_THAT(folder_.FileNames(),
              ::testing::ElementsAre("in.wav", "link.png", "new.png", "old.wav", "text.txt"));
}

TEST_F(RenderCliTest, APipeIsReadAsOftenAsNeededAndAWaitForItCanBeInterrupted) {
  const std::string look = " -q -m dialog -s loudness.AutoLoudness=1";
  EXPECT_EQ(Run("render in.wav -o file.wav" + look).exitCode, 0);
  EXPECT_EQ(Run("render /dev/stdin -o pipe.wav" + look, "", "cat in.wav | ").errors, "");
  EXPECT_EQ(ReadBytes(folder_ / "pipe.wav"), ReadBytes(folder_ / "file.wav"));
  // The shell's own end of the pipe opens when the program waits for it.
  const Outcome stopped =
      Run("render p in.wav -o out --jobs 1 --report r & exec 3>p; kill -TERM $!; wait $!;", "",
          "mkfifo p; ");
  EXPECT_EQ(stopped.exitCode, 130);
  EXPECT_THAT(stopped.errors, HasSubstr("stopped; 0 of 2 files"));
  EXPECT_THAT(At(teskcore::serialization::JSONParse(ReadBytes(folder_ / "r")), "files/1/error"),
              HasSubstr("'out/in.wav' was not written"));
  EXPECT_EQ(Run("analyze p & exec 3>p; kill -TERM $!; wait $!;").exitCode, 130);
  EXPECT_THAT(Run("session", "", "echo add p | ").output, HasSubstr("cannot be read twice"));
  EXPECT_EQ(Run("session </").exitCode, 1) << "a folder holds no commands";
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out"));
}

TEST_F(RenderCliTest, AnalyzesEachFileThatCanBeRead) {
  WriteFile(folder_ / "hum.wav", Make(48000, 1, 4.0, Harmonics(50.1, {0.1, 0.05})));
  const Outcome outcome = Run("analyze in.wav text.txt hum.wav --json");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("'text.txt'"));
  std::istringstream lines(outcome.output);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  const auto plain = teskcore::serialization::JSONParse(line);
  EXPECT_EQ(At(plain, "hum_hz"), "null");
  EXPECT_NEAR(std::stod(At(plain, "sample_peak_dbfs")), -12.04, 0.01);
  ASSERT_TRUE(std::getline(lines, line));
  const auto hum = teskcore::serialization::JSONParse(line);
  EXPECT_NEAR(std::stod(At(hum, "hum_hz")), 50.1, 0.02);
  EXPECT_NEAR(std::stod(At(hum, "hum_dbfs")), -22.04, 0.3);
  EXPECT_FALSE(std::getline(lines, line));
  EXPECT_THAT(Run("analyze in.wav missing.wav >/dev/full").errors, Not(HasSubstr("missing.wav")));
  EXPECT_THAT(Run("analyze in.wav hum.wav").output, ::testing::ContainsRegex("Hum +50.10 Hz"));
}

TEST_F(RenderCliTest, ListsSectionsAndPresetsForPeopleAndAsJson) {
  using teskcore::serialization::JSONParse;
  EXPECT_THAT(Run("sections dialog").output,
              ::testing::ContainsRegex("De-hummer: [A-Za-z ]+ +-10 +-45 +-80 dB"));
  EXPECT_THAT(Run("presets sfx").output, HasSubstr("pan: Enabled=1 Pan=-5"));

  const auto sections = JSONParse(Run("sections ambience --json").output);
  EXPECT_EQ(std::stod(At(sections, "3/parameters/2/max")), 6.0);
  EXPECT_EQ(At(sections, "4"), "nothing");
  EXPECT_NE(At(JSONParse(Run("presets --json").output), "34"), "nothing");
}

TEST_F(RenderCliTest, TellsAboutItself) {
  EXPECT_THAT(Run("--help").output, HasSubstr("render"));
  EXPECT_THAT(Run("render --help").output,
              AllOf(HasSubstr("volume.Volume"), HasSubstr(" -15 to 6 dB "),
                    Not(HasSubstr("PanNotSupported"))));
  EXPECT_EQ(Run("--version").exitCode, 0);
  EXPECT_EQ(Run("").exitCode, 2);
}

}  // namespace
}  // namespace orvelhost::testing
