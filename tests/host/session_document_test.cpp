#include "host/session/session_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include "host/audio/temporary_file.h"
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
  EXPECT_EQ(FormatSession(left, "/"), FormatSession(right, "/"));
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

TEST(SessionDocument, ALinkLeadsToTheSameRecordings) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "deep/er/real");
  std::filesystem::create_directory_symlink("deep/er/real", folder / "link");
  std::filesystem::create_symlink("deep/er/real/b.orvelsession", folder / "b.orvelsession");
  SessionDocument document = Sample(folder / "deep/er");
  document.clips[1].source = folder / "link/x.wav";
  const std::pair<const char*, const char*> ways[] = {
      {"link/a.orvelsession", "a.orvelsession"},
      {"b.orvelsession", "b.orvelsession"},
      {"link/../c.orvelsession", "../c.orvelsession"}};
  for (const auto& [way, real] : ways) {
    WriteSession(document, folder / way);
    const auto clips = ReadSession(folder / "deep/er/real" / real).clips;
    EXPECT_EQ(clips[0].source, document.clips[0].source) << way;
    EXPECT_EQ(clips[1].source, folder / "deep/er/real/x.wav") << way;
  }
  EXPECT_EQ(AbsolutePath(folder / "link/../y.wav"), folder / "deep/er/y.wav");
}

TEST(SessionDocument, DamageAndNewerVersionsAreToldApart) {
  const std::string whole = FormatSession(Sample("/folder"), "/folder");
  const auto change = [&whole](const std::string& from, const std::string& to) {
    std::string text = whole;
    EXPECT_NE(text.find(from), std::string::npos) << from;
    return text.replace(text.find(from), from.size(), to);
  };
  const std::pair<std::string, const char*> cases[] = {
      {whole.substr(0, whole.size() / 2), "not well-formed"},
      {"[]", "is no session"},
      {change(R"("orvelsession")", R"("other")"), "is no session"},
      {change(R"("version": 1)", R"("version": 2)"), "newer version"},
      {change(R"("version": 1)", R"("version": 0)"), "\"version\""},
      {change(R"("source")", R"("sauce")"), "clip 1 has no sound \"source\""},
      {change(R"("source_bytes": "2e)", R"("source_bytes": "2)"), "\"source_bytes\""},
      {change(R"("source_bytes": ")", R"("source_bytes": "00)"), "\"source\""},
      {change(R"("rate": 44100)", R"("rate": 7)"), "clip 1 has no sound \"rate\""},
      {change(R"("channels": 64)", R"("channels": 65)"), "clip 2 has no sound \"channels\""},
      {change(R"("ClipType": 4)", R"("ClipType": 7)"), "\"ClipType\""},
      {change(R"("AdjustmentMode")", R"("Mode")"), "\"AdjustmentMode\""},
      {change("0.10000000149011612", "1.5"), "beyond 0 to 1"},
      {change("0.10000000149011612", "1e300"), "another kind"},
      {change(R"("selected": [)", R"("selected": [ -1,)"), "selection"},
      {change(R"("selected": [)", R"("selected": [ 1,)"), "selection"},
      {change(R"("selected": [)", R"("selected": [ 2,)"), "selection"},
      {change(R"("OrvelConfigurations")", R"("Configurations")"), "configurations"},
      {change(R"("ModeID": "sfx")", R"("ModeID": 4)"), "another kind"},
  };
  for (const auto& [text, cause] : cases) {
    SCOPED_TRACE(cause);
    EXPECT_THAT([&text = text] { ParseSession(text, "/folder"); },
                ::testing::ThrowsMessage<SessionError>(HasSubstr(cause)));
  }
}

TEST(SessionDocument, AProcessThatIsKilledWhileSavingLeavesTheOldOrTheNewFile) {
  const TemporaryFolder folder;
  const std::filesystem::path file = folder / "day.orvelsession";
  const SessionDocument document = Sample(folder / "");
  const std::string old = FormatSession({}, folder / "");
  const std::string next = FormatSession(document, folder / "");
  WriteSession({}, file);
  const auto names = folder.FileNames();
  TemporaryFile other(file);  // of another program that saves just now
  std::size_t left = 0;
  for (int round = 0; round < 60; ++round) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    orvel::test::KillWhile(
        [&] {
          for (bool isNext = true;; isNext = !isNext) {
            WriteSession(isNext ? document : SessionDocument(), file);
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
    EXPECT_THAT(ReadBytes(file), ::testing::AnyOf(old, next)) << round;
    left += folder.FileNames().size() - names.size() - 1;
    if (round % 2 == 0) {
      ReadSession(file);
    } else {
      WriteSession({}, file);
    }
    EXPECT_EQ(folder.FileNames().size(), names.size() + 1) << "what the kill left is cleared";
  }
  EXPECT_GT(left, 10u) << "the kills come while a file is written";
  other.Commit();
  EXPECT_EQ(folder.FileNames(), names);
  EXPECT_EQ(ReadBytes(file), "");
}

}  // namespace
}  // namespace orvelhost::testing
