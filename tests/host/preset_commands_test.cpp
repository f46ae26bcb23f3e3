#include <map>

#include <gmock/gmock.h>

#include "orvel/orvel.h"
#include "tests/host/support/cli.h"

namespace orvelhost::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// The person's presets are those in the folder "own".
class PresetCommandsTest : public CliTest {
 protected:
  Outcome Presets(const std::string& arguments) { return Run("--prefs own presets " + arguments); }

  /// Every file of the preset folder with its bytes.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / "own")) {
      if (entry.is_regular_file()) files[entry.path().string()] = ReadBytes(entry.path());
    }
    return files;
  }

  std::filesystem::path DialogFolder() const {
    return folder_ / "own/Presets/Orvel/Default/dialog";
  }
};

TEST_F(PresetCommandsTest, APresetThatWasExportedAndRemovedComesBackTheSame) {
  const Outcome saved = Presets(
      "save 'שלי/50% 🎙️' -m dialog --from 'Podcast Voice' --set volume.Volume=-3 --json");
  EXPECT_EQ(saved.exitCode, 0) << saved.errors;
  EXPECT_THAT(saved.output, AllOf(HasSubstr(R"("EnableVolume": 1)"), HasSubstr(R"("Volume": -3)"),
                                  HasSubstr(R"("EnableReduceNoise": 1)")));
  const auto files = Files();
  EXPECT_EQ(Presets("export 'שלי/50% 🎙️' -o mine.json").exitCode, 0);
  EXPECT_EQ(Presets("remove 'שלי/50% 🎙️'").exitCode, 0);
  EXPECT_THAT(Presets("dialog").output, Not(HasSubstr("שלי/50% 🎙️")));
  EXPECT_THAT(Presets("import mine.json").output, HasSubstr("imported שלי/50% 🎙️"));
  EXPECT_EQ(Files(), files);
  EXPECT_THAT(Presets("import mine.json").output, HasSubstr("unchanged"));
  EXPECT_EQ(Run("--prefs=elsewhere presets export 'שלי/50% 🎙️'").exitCode, 1);
  EXPECT_EQ(Presets("save 'שלי/50% 🎙️' -m dialog --force --set volume.Volume=1").exitCode,
            0);
  EXPECT_NE(Files(), files);
  EXPECT_EQ(Files().size(), files.size());
  EXPECT_EQ(Presets("import mine.json").exitCode, 1) << "its values differ now";
  EXPECT_THAT(Presets("import mine.json --force").output, HasSubstr("replaced שלי/50% 🎙️"));
  EXPECT_EQ(Files(), files) << "a preset that was replaced kept its guid";
}

TEST_F(PresetCommandsTest, ARefusalGivesItsReasonAndChangesNothing) {
  ASSERT_EQ(Presets("save Taken -m dialog").exitCode, 0);
  ASSERT_EQ(Presets("export Taken -o there.json").exitCode, 0);
  const auto files = Files();
  const std::string exported = ReadBytes(folder_ / "there.json");
  const struct {
    const char* arguments;
    int exitCode;
    const char* message;
  } cases[] = {
      {"save -m dialog", 2, "one name"},
      {"save New", 2, "--mode: dialog, music"},
      {"save New -m music --from 'Podcast Voice'", 1, "in the mode music"},
      {"save New -m dialog --template Mine", 1, "no template 'Mine'"},
      {"save '' -m dialog", 1, "needs a name"},
      {"save '(Config)' -m dialog", 1, "configuration's file"},
      {"save Taken -m dialog", 1, "Taken  (dialog"},
      {"save 'Podcast Voice' -m dialog --force", 1, "comes with the library"},
      {"remove 'Podcast Voice'", 1, "comes with the library"},
      {"remove TAKEN", 1, "no preset 'TAKEN'"},
      {"export Taken -o there.json", 2, "exists already"},
      {"export Taken -o missing/there.json", 1, "'missing/there.json'"},
      {"import", 2, "give a file"},
      {"import own", 1, "folder"},
      {"import /dev/zero", 1, "too long"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.arguments);
    const Outcome outcome = Presets(one.arguments);
    EXPECT_EQ(outcome.exitCode, one.exitCode);
    EXPECT_THAT(outcome.errors, HasSubstr(one.message));
    EXPECT_THAT(outcome.output, IsEmpty());
    EXPECT_EQ(Files(), files);
    EXPECT_EQ(ReadBytes(folder_ / "there.json"), exported);
  }
  const Outcome ambiguous = Presets("export '(Default)'");
  EXPECT_EQ(ambiguous.exitCode, 1);
  EXPECT_THAT(ambiguous.errors, AllOf(HasSubstr("(dialog, 29005963-8f41-4937-a812-05e11b425da1)"),
                                      HasSubstr("(music, 83579953-5c56-4107-a31a-b5920f46d141)")));
  EXPECT_EQ(Presets("export Taken taken").output, exported) << "it is one preset";
  EXPECT_EQ(Presets("export 83579953-5c56-4107-a31a-b5920f46d141").exitCode, 0);
  EXPECT_EQ(Run("--prefs /dev/null/x presets").exitCode, 1);
  EXPECT_THAT(Run("presets --prefs=").errors, HasSubstr("--prefs needs a value"));
  EXPECT_THAT(Run("presets --prefs \"$(printf '\\377')\"").errors, HasSubstr("UTF-8"));
  EXPECT_THAT(Run("presets --log missing/log").errors, HasSubstr("'missing/log'"));
}

std::string Document(const std::string& name, const std::string& guidStart, const std::string& mode,
                     const std::string& values = "[1, 1, -2]") {
  return R"({"Guid": ")" + guidStart + R"(de33-1adc-44a9-a6eb-5490f965859b", "Name": ")" + name +
         R"(", "PresetData": {"ModeID": ")" + mode + R"(", "Models": {"model_volume": )" + values +
         "}}}";
}

TEST_F(PresetCommandsTest, AnImportSavesAFileAsAWholeAndNeverReplacesUnasked) {
  ASSERT_EQ(Presets("save Taken -m dialog").exitCode, 0);
  const auto files = Files();
  const auto expectNothing = [&](const std::string& text, const char* reason) {
    SCOPED_TRACE(text);
    WriteBytes(folder_ / "in.json", text);
    const Outcome outcome = Presets("import in.json");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr("'in.json'"), HasSubstr(reason)));
    EXPECT_EQ(Files(), files);
  };
  const std::string good = Document("New", "cea6", "dialog");
  expectNothing("[" + good, "not well-formed");
  expectNothing("[]", "no user preset");
  expectNothing("[" + good + ", " + Document("Bad", "cea7", "dialog", "7") + "]", "something else");
  expectNothing(Document("New", "cea6", "podcast"), "'podcast'");
  expectNothing(Document("Taken", "cea6", "dialog"), "of this name");
  expectNothing(Document("N\\u001b\\n", "cea6", "\\u001b"), "refused N\\x1b\\n  (\\x1b, ");
  expectNothing(Document("Podcast Voice", "cea6", "dialog"), "comes with the library");
  expectNothing(Document("Default", "cea6", "dialog"), "reserved");

  // A folder where the second preset's file would stand: the first goes again.
  std::filesystem::create_directories(DialogFolder() / "Blocked.orvel");
  expectNothing("[" + good + ", " + Document("Blocked", "cea7", "dialog") + "]", "cannot save");

  WriteBytes(folder_ / "in.json", "[" + good + ", " + Document("New", "cea7", "dialog") + ", " +
                                      Document("Taken", "cea8", "dialog") + "]");
  const Outcome some = Presets("import broken.json in.json --json");
  EXPECT_EQ(some.exitCode, 1);
  EXPECT_THAT(some.output, AllOf(HasSubstr(R"("outcome": "imported")"), HasSubstr("stands before"),
                                 HasSubstr("its template is not here")));
  EXPECT_EQ(Files().size(), files.size() + 1);
  EXPECT_EQ(Presets("import in.json --force --quiet").output, "");
  EXPECT_EQ(Files().size(), files.size() + 1) << "the other preset of that name went";
  EXPECT_EQ(Presets("remove cea8de33-1adc-44a9-a6eb-5490f965859b").exitCode, 0);

  std::string shipped = Presets("export 'Podcast Voice'").output;
  WriteBytes(folder_ / "in.json", shipped.replace(shipped.find("\t1,"), 3, "\t0,"));
  EXPECT_THAT(Presets("import in.json --force").errors, HasSubstr("with other values"));
}

TEST_F(PresetCommandsTest, TemplatesOfThePreferencesFolderAreListedAndUsed) {
  EXPECT_THAT(Run("--prefs own templates").output,
              HasSubstr("(Default)  (dialog, comes with the library, "
                        "58dc27a8-6a2a-480c-bd0c-4b45fff346a6): 16 presets\n"));
  // A copy of the factory's template is one of its own, with presets of its own.
  const auto root = folder_ / "own/Presets/Orvel";
  std::filesystem::create_directories(root / "Studio");
  std::filesystem::copy(DialogFolder(), root / "Studio/dialog");
  EXPECT_THAT(Run("--prefs own templates dialog --json").output,
              AllOf(HasSubstr(R"("name": "Studio")"), HasSubstr(R"("ReverbPresets")"),
                    Not(HasSubstr("music"))));
  EXPECT_THAT(Presets("export 'Podcast Voice'").errors, HasSubstr("dialog, template Studio, "));
  EXPECT_EQ(Presets("save Mine -m dialog --template Studio --from 'Podcast Voice'").exitCode, 0);
  EXPECT_EQ(Presets("remove 'Podcast Voice' --template Studio").exitCode, 0);
  EXPECT_THAT(Presets("save A -m dialog --template Studio --from 'Podcast Voice' --json").output,
              AllOf(HasSubstr(R"("template": "Studio")"), HasSubstr(R"("EnableReduceNoise": 1)")));
  EXPECT_EQ(Run("--prefs own sections dialog --template Studio").output,
            Run("--prefs own sections dialog").output);
}

TEST_F(PresetCommandsTest, TextsAreTranslatedAndWhatCannotBeReadIsToldAndLoggedWhenAsked) {
  EXPECT_THAT(Run("--prefs own modes").output, HasSubstr("Dialogue"));
  WriteBytes(folder_ / "own/translations.json",
             R"({"orvel/ClipTypeNameDialogue": "Dialog", "app/Presets/DefaultPresetName": "Std"})");
  EXPECT_THAT(Run("--prefs own modes").output, Not(HasSubstr("Dialogue")));
  EXPECT_EQ(Presets("export Std -m music").output, Presets("export '(Default)' -m music").output);
  EXPECT_THAT(folder_.FileNames(), ::testing::ElementsAre("own"));

  WriteBytes(DialogFolder() / "broken.orvel", "{");
  const Outcome told = Run("presets dialog --prefs own --log log.jsonl");
  EXPECT_EQ(told.exitCode, 0);
  EXPECT_THAT(told.errors, AllOf(HasSubstr("broken.orvel"), HasSubstr("not well-formed")));
  EXPECT_THAT(told.output, HasSubstr("Podcast Voice  (dialog")) << "it hides no other";
  EXPECT_THAT(Run("presets dialog --log=log.jsonl --prefs=own --quiet").errors, IsEmpty());
  const std::string log = ReadBytes(folder_ / "log.jsonl");
  EXPECT_EQ(std::ranges::count(log, '\n'), 2);
  const Outcome lost = Run("presets dialog --prefs own --log /dev/full");
  EXPECT_EQ(lost.exitCode, 1);
  EXPECT_THAT(lost.errors, HasSubstr("'/dev/full': No space"));
  EXPECT_THAT(log, AllOf(HasSubstr(R"("kind":"trace")"), HasSubstr("broken.orvel")));

  // Rendered without its template a mode would sound otherwise.
  WriteBytes(folder_ / "own/Presets/Orvel/Default/sfx/(Config).orvel", "{");
  EXPECT_THAT(Run("--prefs own render in.wav -o out.wav -m sfx").errors,
              AllOf(HasSubstr("template of the mode sfx"), HasSubstr("not well-formed")));

  for (const char* broken : {"[]", R"({"orvel/ClipTypeNameDialogue": 1})", "{"}) {
    WriteBytes(folder_ / "own/translations.json", broken);
    EXPECT_THAT(Run("--prefs own modes").errors, HasSubstr("translations.json"));
  }
  EXPECT_EQ(Run("--prefs . modes", "", "mkfifo translations.json; ").exitCode, 1);
  EXPECT_EQ(Run("--prefs").exitCode, 2);
}

}  // namespace
}  // namespace orvelhost::testing
