#include "host/session/session_document.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include "host/audio/temporary_file.h"
#include "host/session/host.h"
#include "tests/host/support/audio.h"
#include "tests/support/kill_while.h"

namespace orvelhost::testing {
namespace {

using ::testing::HasSubstr;

const orvel::Guid kPreset("11111111-1adc-44a9-a6eb-5490f965859b");

SessionDocument Sample(const std::filesystem::path& folder) {
  SessionDocument document;
  document.clips.push_back({folder / "audio/a \"b\"\n\u05d0.wav",
                            {44100, 2, 3},
                            orvel::type_sfx,
                            "sfx",
                            kPreset,
                            {{"model_volume", {1.0f, 0.1f, 0x1.fffffep-2f}}, {"model_pan", {}}}});
  document.clips.push_back({folder / "../\xff%.wav",
                            {768000, 64, 0},
                            orvel::type_not_set,
                            orvel::kAdjustmentsModeUnknown,
                            {},
                            {}});
  document.clips.back().source = document.clips.back().source.lexically_normal();
  document.selected = {1};
  orvel::ConfigPreset configuration;
  configuration.Guid = kPreset;
  configuration.Name = "Mine";
  configuration.PresetData.ModeID = "sfx";
  configuration.PresetData.Models["model_volume"].SetValue("Max", 0.1f);
  document.configurations.push_back(configuration);
  return document;
}

void ExpectEqual(const SessionDocument& left, const SessionDocument& right) {
  EXPECT_EQ(left.clips, right.clips);
  EXPECT_EQ(left.selected, right.selected);
  std::string leftText;
  std::string rightText;
  ASSERT_TRUE(orvel::WritePresets(left.configurations, leftText));
  ASSERT_TRUE(orvel::WritePresets(right.configurations, rightText));
  EXPECT_EQ(leftText, rightText);
}

TEST(SessionDocument, OpensTheSameToTheLastBitAlsoInAnotherPlace) {
  const TemporaryFolder folder;
  const SessionDocument document = Sample(folder / "here");
  const std::string text = FormatSession(document, folder / "here");
  ExpectEqual(ParseSession(text, folder / "here"), document);
  ExpectEqual(ParseSession(text, folder / "there"), Sample(folder / "there"));
  EXPECT_THAT(text, HasSubstr(R"("source": "audio/a \"b\"\n)"));
  EXPECT_EQ(FormatSession(ParseSession(text, "/a/b"), "/a/b"), text);
}

TEST(SessionDocument, DamageAndNewerVersionsAreToldApart) {
  const std::string whole = FormatSession(Sample("/folder"), "/folder");
  const auto change = [&whole](const std::string& from, const std::string& to) {
    std::string text = whole;
    EXPECT_NE(text.find(from), std::string::npos) << from;
    return text.replace(text.find(from), from.size(), to);
  };
  const std::pair<std::string, const char*> cases[] = {
      {"", "not well-formed"},
      {whole.substr(0, whole.size() / 2), "not well-formed"},
      {"[]", "is no session"},
      {change(R"("orvelsession")", R"("other")"), "is no session"},
      {change(R"("version": 1)", R"("version": 2)"), "newer version"},
      {change(R"("version": 1)", R"("version": 0)"), "\"version\""},
      {change(R"("version": 1)", R"("version": "1")"), "\"version\""},
      {change(R"("clips")", R"("clipz")"), "\"clips\""},
      {change(R"("source")", R"("sauce")"), "clip 1 has no sound \"source\""},
      {change(R"("source_bytes": "2e)", R"("source_bytes": "2)"), "\"source_bytes\""},
      {change(R"("source_bytes": ")", R"("source_bytes": "00)"), "\"source\""},
      {change(R"("rate": 44100)", R"("rate": 7)"), "clip 1 has no sound \"rate\""},
      {change(R"("channels": 64)", R"("channels": 65)"), "clip 2 has no sound \"channels\""},
      {change(R"("ClipType": 4)", R"("ClipType": 7)"), "\"ClipType\""},
      {change(R"("AdjustmentMode")", R"("Mode")"), "\"AdjustmentMode\""},
      {change(R"("PresetGuid")", R"("Guid")"), "\"PresetGuid\""},
      {change("0.10000000149011612", "1.5"), "beyond 0 to 1"},
      {change("0.10000000149011612", "true"), "another kind"},
      {change("0.10000000149011612", "1e300"), "another kind"},
      {change(R"("selected": [)", R"("selected": [ -1,)"), "selection"},
      {change(R"("selected": [)", R"("selected": [ 1,)"), "selection"},
      {change(R"("selected": [)", R"("selected": [ 2,)"), "selection"},
      {change(R"("OrvelConfigurations")", R"("Configurations")"), "configurations"},
      {change(R"("ModeID": "sfx")", R"("ModeID": 4)"), "another kind"},
  };
  for (const auto& [text, cause] : cases) {
    SCOPED_TRACE(cause);
    try {
      ParseSession(text, "/folder");
      ADD_FAILURE() << "expected: " << cause;
    } catch (const SessionError& error) {
      EXPECT_THAT(error.what(), HasSubstr(cause));
    }
  }
}

/// A host with two clips, the first of which has values and a mode, and a file to save to.
class SessionTest : public ::testing::Test {
 protected:
  SessionTest() {
    WriteFile(folder_ / "a.wav", Make(44100, 2, 0.1, Sine(0.25)));
    WriteFile(folder_ / "b.flac", Make(48000, 1, 0.1, Sine(0.25)));
    session_.AddClips({folder_ / "a.wav", folder_ / "b.flac"});
    const auto clip = session_.GetClips().front().clip;
    clip->SetAdjustmentsMode("dialog");
    clip->SetUserPresetGuid(kPreset);
    clip->SectionValues("model_volume") = {1.0f, 1.0f, 0.3f};
    session_.Select(std::vector<std::size_t>{0, 1});
  }

  TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "day.orvelsession";
  Host host_;
  Session& session_ = *host_.GetSession();
};

TEST_F(SessionTest, AProcessThatIsKilledWhileSavingLeavesTheOldOrTheNewFile) {
  const std::string old = FormatSession({}, folder_ / "");
  const std::string next = FormatSession(session_.GetDocument(), folder_ / "");
  WriteSession({}, file_);
  const auto names = folder_.FileNames();
  TemporaryFile other(file_);  // of another program that saves just now
  std::size_t left = 0;
  for (int round = 0; round < 60; ++round) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    orvel::test::KillWhile(
        [&] {
          for (bool isNext = true;; isNext = !isNext) {
            WriteSession(isNext ? session_.GetDocument() : SessionDocument(), file_);
            if (write(pipe[1], "x", 1) != 1) _exit(1);
          }
        },
        [&] {
          char byte;
          for (int saves = 0; saves <= round % 3; ++saves) ASSERT_EQ(read(pipe[0], &byte, 1), 1);
          for (int turns = 0; turns < round * 30; ++turns) sched_yield();
        });
    close(pipe[0]);
    close(pipe[1]);
    EXPECT_THAT(ReadBytes(file_), ::testing::AnyOf(old, next)) << round;
    left += folder_.FileNames().size() - names.size() - 1;
    if (round % 2 == 0) {
      ReadSession(file_);
    } else {
      WriteSession({}, file_);
    }
    EXPECT_EQ(folder_.FileNames().size(), names.size() + 1) << "what the kill left is cleared";
  }
  EXPECT_GT(left, 10u) << "the kills come while a file is written";
  other.Commit();
  EXPECT_EQ(folder_.FileNames(), names);
  EXPECT_EQ(ReadBytes(file_), "");
}

}  // namespace
}  // namespace orvelhost::testing
