// Random lines for `orvel session --json`: sensible ones, mutilated ones and rubbish. Each is
// answered by one object, nothing crashes, and undoing everything leads to where it began.
// ORVEL_WALK_SEED walks one seed again, ORVEL_WALK_STEPS sets the number of lines.

#include <algorithm>
#include <random>
#include <set>

#include "tests/host/support/shell.h"
#include "tests/support/environment.h"

namespace orvelhost::testing {
namespace {

class ShellWalk : public ShellTest {
 protected:
  using Texts = std::vector<std::string>;

  std::size_t Below(std::size_t end) { return random_() % end; }
  const std::string& OneOf(const Texts& all) { return all[Below(all.size())]; }
  void Say(const std::string& line) {
    script_ += line + "\n";
    ++lines_;
  }

  std::string Number() {
    switch (Below(8)) {
      case 0:
        return OneOf({"nan", "inf", "-", "1e999", "0x1", "", "7.5.5", "''", "-0"});
      case 1:
        return std::to_string(static_cast<int>(Below(2000000)) - 1000000);
      case 2:
        return OneOf({"0", "1"});
      default:
        return std::to_string(static_cast<double>(Below(2000)) / 100.0 - 8.0);
    }
  }
  std::string Control() {
    return OneOf({"volume.Volume", "volume.EnableVolume", "clarity.EQAmount",
                  "clarity.EnableDynamics", "clarity.ReanalyzeDynamics", "loudness.AutoLoudness",
                  "loudness.ResetLoudnessMeasurements", "loudness.MeasuredLoudness",
                  "duration.Enabled", "duration.TargetDuration", "duration.Mode", "pan.Pan",
                  "volume", ".", "nobody.Volume"});
  }
  std::string Name() {
    return OneOf({"Mine", "Yours", "(Default)", "'Podcast Voice'", "'From the Left'", "Default",
                  "''", "'a/b'", "..", "'\xff\xfe'", "\xF0\x9F\x8E\xA7", std::string(300, 'n')});
  }

  /// A command that undo takes back, or that changes no clip.
  std::string Tame() {
    switch (Below(15)) {
      case 0:
        return "mode " + OneOf({"dialog", "music", "sfx", "ambience", "none", "opera"});
      case 1:
        return "preset " + Name();
      case 2: {
        std::string drag = "drag " + Control();
        for (std::size_t count = Below(6); count > 0; --count) drag += " " + Number();
        return drag;
      }
      case 3:
        return "offset " + Control() + " " + Number();
      case 4:
        return "configure " + OneOf({"volume", "loudness", "pan", "clarity"}) + " " +
               OneOf({"MaxGain", "MinGain", "DefaultLoudness", "Nothing"}) + " " + Number();
      case 5:
        return OneOf({"undo", "redo"});
      case 6:
        return OneOf({"history", "presets", "templates", "show", "show volume", "clips", "help"});
      case 7:
        return OneOf({"save-preset ", "remove-preset "}) + Name();
      case 8:
      case 9:
        return "select " + OneOf({"1", "2", "3", "1 2", "2 3 2", "all", "none", "4", "1 x", "-1"});
      case 10:
        return Below(4) == 0 ? "revert" : OneOf({"template ", "save-template "}) + Name();
      default:
        return "set " + Control() + " " + Number();
    }
  }
  /// A command that may leave the session and its settings as another one.
  std::string Wild() {
    switch (Below(5)) {
      case 0:
        return "add " + OneOf({"c.wav", "'a b.wav'", "text.txt", "missing.wav", "."});
      case 1:
        return OneOf({"open start.orvelsession", "open text.txt", "open c.wav", "open ''"});
      case 2:
        return OneOf({"save other.orvelsession", "save missing/x", "save ."});
      case 3:
        return Below(20) == 0 ? "render out" : "render text.txt";
      default:
        return Tame();
    }
  }
  /// Not blank, not two lines, and not the end.
  std::string Rubbish(std::string line) {
    for (std::size_t count = Below(4) + 1; count > 0 && !line.empty(); --count) {
      const std::size_t place = Below(line.size());
      switch (Below(3)) {
        case 0:
          line[place] = static_cast<char>(random_());
          break;
        case 1:
          line.insert(place, OneOf({"'", "\"", "\\", " ", "\t", std::string(1, '\0'), "\xC3"}));
          break;
        default:
          line.erase(place, Below(line.size()));
      }
    }
    std::ranges::replace(line, '\n', '?');
    if (line.find_first_not_of(" \t\r") == std::string::npos || line.starts_with("quit"))
      line = "?";
    // What it became by chance may not be known to undo.
    for (const char* verb : {"add", "open", "save", "render"}) {
      if (line.find(verb) != std::string::npos) line = "'";
    }
    return line;
  }

  /// Asks for all that undo has to bring back; the place of the first answer.
  std::size_t AskForAll() {
    const std::size_t first = lines_;
    for (const char* clip : {"1", "2", "3"}) {
      Say(std::string("select ") + clip);
      Say("show");
      Say("presets");
    }
    return first;
  }
  /// Without what is measured and not set, and the list of all presets.
  static std::string Essence(const JSONValuePtr& answer) {
    static const std::set<std::string> kReadBacks = {
        "loudness.MeasuredLoudness", "loudness.AdjustedLoudness", "loudness.AnalysisStatus",
        "clarity.AnalysisStatus",    "duration.MinDuration",      "duration.MaxDuration"};
    std::string text;
    if (const auto current = Member(answer, "current")) {
      return boost::any_cast<std::string>(*current);
    }
    const auto parameters = Member(answer, "parameters");
    if (!parameters) return teskcore::serialization::GetJSONUTF8String(answer, false);
    for (const auto& one : boost::any_cast<const JSONArray&>(*parameters)) {
      if (!kReadBacks.contains(Get<std::string>(one, "name"))) {
        text += teskcore::serialization::GetJSONUTF8String(one, false);
      }
    }
    return text;
  }

  std::mt19937 random_;
  std::string script_;
  std::size_t lines_ = 0;
};

TEST_F(ShellWalk, EveryLineIsAnsweredAndEverythingIsUndone) {
  const unsigned first = orvel::test::Asked("ORVEL_WALK_SEED", 20261121);
  const std::size_t count = orvel::test::Asked("ORVEL_WALK_STEPS", 3000);
  random_.seed(first);
  SCOPED_TRACE("seed " + std::to_string(first));
  std::vector<std::pair<std::size_t, std::size_t>> equal;
  Say("add c.wav 'a b.wav' d.wav");
  Say("mode dialog");
  Say("select 2 3");
  Say("mode music");
  Say("save start.orvelsession");
  while (lines_ < count) {
    Say("open start.orvelsession");
    const std::size_t start = AskForAll();
    const std::size_t length = 1 + Below(60);
    for (std::size_t i = 0; i < length; ++i) Say(Below(6) == 0 ? Rubbish(Tame()) : Tame());
    for (std::size_t i = 0; i < length; ++i) Say("redo");
    const std::size_t end = AskForAll();
    for (std::size_t i = 0; i <= length; ++i) Say("undo");
    equal.emplace_back(start, AskForAll());
    for (std::size_t i = 0; i <= length; ++i) Say("redo");
    equal.emplace_back(end, AskForAll());
    for (std::size_t i = Below(60); i > 0; --i) Say(Below(6) == 0 ? Rubbish(Wild()) : Wild());
  }
  const auto objects = Objects(script_, 1);
  ASSERT_EQ(objects.size(), lines_) << "a line, an answer";
  for (const auto& [one, other] : equal) {
    for (std::size_t i = 0; i < 9 && !HasFailure(); ++i) {
      EXPECT_EQ(Essence(objects[one + i]), Essence(objects[other + i])) << "line " << other + i;
    }
  }
}

}  // namespace
}  // namespace orvelhost::testing
